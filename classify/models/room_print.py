"""The feature print: a projection in which views of one room lie close and rooms of one kind far apart."""
import numpy

LENGTH = 48  # numbers in a print
SHRINK = 0.5  # how far the spread within a photo is drawn towards an even one


def fit(inputs, photo, bins):
    """Rows of a linear map of standardised features, with its bias. Rows with photo -1 are passed over."""
    known = photo >= 0
    inputs, photo = inputs[known].astype(numpy.float64), photo[known]
    names, index, counts = numpy.unique(photo, return_inverse=True, return_counts=True)
    means = numpy.zeros((len(names), inputs.shape[1]))
    numpy.add.at(means, index, inputs)
    means /= counts[:, None]
    stray = (inputs - means[index])[counts[index] > 1]
    within = stray.T @ stray / len(stray)
    within = (1 - SHRINK) * within + SHRINK * numpy.trace(within) / len(within) * numpy.eye(len(within))
    values, vectors = numpy.linalg.eigh(within)
    whiten = vectors / numpy.sqrt(values) @ vectors.T
    # Rooms of one kind must be told apart; kinds are the head's business.
    apart = means.copy()
    kinds = bins[names]
    for kind in numpy.unique(kinds):
        apart[kinds == kind] -= means[kinds == kind].mean(axis=0)
    apart = apart @ whiten
    _, vectors = numpy.linalg.eigh(apart.T @ apart / len(apart))
    rows = (whiten @ vectors[:, ::-1][:, :LENGTH]).T
    return rows.astype(numpy.float32), (-rows @ means.mean(axis=0)).astype(numpy.float32)


def prints(inputs, rows, bias):
    values = inputs @ rows.T + bias
    return values / numpy.linalg.norm(values, axis=1, keepdims=True)


def pairs(values, photo, bins, houses, seed=1):
    """Distances of views of one photo, and of photos of one kind from different houses."""
    generator = numpy.random.default_rng(seed)
    same, other = [], []
    for index in numpy.unique(photo):
        rows = numpy.nonzero(photo == index)[0]
        for a in range(len(rows)):
            for b in range(a + 1, len(rows)):
                same.append(numpy.linalg.norm(values[rows[a]] - values[rows[b]]))
    for kind in numpy.unique(bins[photo]):
        rows = numpy.nonzero(bins[photo] == kind)[0]
        for a in rows:
            for b in generator.choice(rows, 8):
                if photo[a] != photo[b] and (houses[photo[a]] != houses[photo[b]] or houses[photo[a]] == ""):
                    other.append(numpy.linalg.norm(values[a] - values[b]))
    return numpy.array(same), numpy.array(other)
