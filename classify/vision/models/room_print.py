"""The feature print: a projection in which the frames of a clip lie close and rooms of one kind far apart."""

import numpy

LENGTH = 48  # numbers in a print
DIRECTIONS = 300  # of the features, in which most of their spread is
SHRINK = 0.5  # how far the spread within a clip is drawn towards an even one


def directions(inputs):
    """The features' main directions, a column each."""
    sample = inputs[:: max(1, len(inputs) // 2000)]
    values, vectors = numpy.linalg.eigh(sample @ sample.T)
    kept = numpy.argsort(values)[::-1][:DIRECTIONS]
    return (sample.T @ vectors[:, kept]) / numpy.sqrt(values[kept])


def fit(projected, clip, bins):
    """Rows of a linear map of the projected features, with its bias. clip tells which rows are of one clip."""
    projected = projected.astype(numpy.float64)
    names, index, counts = numpy.unique(clip, return_inverse=True, return_counts=True)
    means = numpy.zeros((len(names), projected.shape[1]))
    numpy.add.at(means, index, projected)
    means /= counts[:, None]
    stray = (projected - means[index])[counts[index] > 1]
    within = stray.T @ stray / len(stray)
    within = (1 - SHRINK) * within + SHRINK * numpy.trace(within) / len(within) * numpy.eye(len(within))
    values, vectors = numpy.linalg.eigh(within)
    whiten = vectors / numpy.sqrt(values) @ vectors.T
    # Rooms of one kind must be told apart; kinds are the head's business.
    apart = means.copy()
    kinds = numpy.zeros(len(names), int)
    kinds[index] = bins
    for kind in numpy.unique(kinds):
        apart[kinds == kind] -= means[kinds == kind].mean(axis=0)
    apart = apart @ whiten
    _, vectors = numpy.linalg.eigh(apart.T @ apart / len(apart))
    rows = (whiten @ vectors[:, ::-1][:, :LENGTH]).T
    return rows.astype(numpy.float32), (-rows @ means.mean(axis=0)).astype(numpy.float32)


def prints(projected, rows, bias):
    values = projected @ rows.T + bias
    return values / numpy.linalg.norm(values, axis=1, keepdims=True)


def pairs(values, clip, bins, sites):
    """Distances of the first and the last of each clip's frames, and of first frames of one bin from different sites."""
    first = numpy.array([numpy.nonzero(clip == each)[0][0] for each in numpy.unique(clip)])
    last = numpy.array([numpy.nonzero(clip == each)[0][-1] for each in numpy.unique(clip)])
    same = numpy.linalg.norm(values[first] - values[last], axis=1)[first != last]
    other = [numpy.linalg.norm(values[a] - values[b]) for i, a in enumerate(first) for b in first[:i]
             if bins[a] == bins[b] and sites[a] != sites[b]]
    return same, numpy.array(other)
