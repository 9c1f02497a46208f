"""The head: a linear map of standardised features, in weighted squares closest to the labels, and its probabilities."""

import numpy

from room_data import BINS, EXCLUSIVE, FRAMES, NONE, NOTHING, OUTPUTS

CLIP = 5.0  # standard deviations; what lies beyond says no more
PENALTY = 0.6
# The share of a label that goes to the second bin that a reasonable editor might choose.
SECOND = 0.45
# The weight of a picture of a source beside a photo of a site. The four frames of a clip are much alike.
SOURCE_WEIGHTS = {"sites": 1.0, "sites2": 1.0, "sites-rendered": 0.3, "sites2-rendered": 0.3, "clips-real": 0.5,
                  "clips-cg": 0.3, "clips-slideshow-of-stills": 0.3, "garden": 0.05, "made": 0.25}
OTHER_WEIGHT = 0.25
BALANCE = 0.4  # 0: a bin weighs as its pictures do, 1: all bins alike
ROOMS = [index for index in range(len(BINS)) if index not in EXCLUSIVE]


class Scaling:
    """Each feature's mean and spread. Square roots tame the features' long tails."""

    def __init__(self, features):
        values = self.root(features)
        self.mean = values.mean(axis=0)
        self.spread = values.std(axis=0) + 0.02

    @staticmethod
    def root(features):
        return numpy.sign(features) * numpy.sqrt(numpy.abs(features))

    def __call__(self, features):
        return numpy.clip((self.root(features) - self.mean) / self.spread, -CLIP, CLIP).astype(numpy.float32)


def weights_of(pictures, rows):
    weight = numpy.array([SOURCE_WEIGHTS.get(source, OTHER_WEIGHT) for source in pictures.sources[rows]])
    bins = pictures.bins[rows]
    count = numpy.bincount(bins, weight, minlength=OUTPUTS)
    return (weight * (count.mean() / count[bins]) ** BALANCE).astype(numpy.float32)


def targets_of(pictures, rows):
    bins, second = pictures.bins[rows], pictures.alternatives[rows]
    targets = numpy.zeros((len(rows), OUTPUTS), numpy.float32)
    targets[numpy.arange(len(rows)), bins] = 1.0
    unsure = numpy.nonzero(second != NONE)[0]
    targets[unsure] *= 1 - SECOND
    targets[unsure, second[unsure]] += SECOND
    return targets


def dual(products, pictures, rows):
    """The map as a weight for each of the rows: what it says of a picture is (products with the rows + 1) @ this."""
    root = numpy.sqrt(weights_of(pictures, rows))
    root /= numpy.sqrt((root**2).mean())
    system = (products[numpy.ix_(rows, rows)] + 1) * root[:, None] * root[None, :]
    system[numpy.arange(len(rows)), numpy.arange(len(rows))] += PENALTY
    return numpy.linalg.solve(system, targets_of(pictures, rows) * root[:, None]) * root[:, None]


def softmax(values):
    values = numpy.exp(values - values.max(axis=1, keepdims=True))
    return values / values.sum(axis=1, keepdims=True)


def of_clips(values):
    """The mean over each clip's frames, rows of four being a clip's."""
    return values.reshape(-1, FRAMES, values.shape[1]).mean(axis=1)


def sharpness_of(said, targets):
    """The factor that makes what the map says logits, so that the labels are likeliest."""
    steps = numpy.arange(3.0, 20.0, 0.25)
    losses = [-(targets * numpy.log(softmax(said * step) + 1e-9)).sum(axis=1).mean() for step in steps]
    return float(steps[int(numpy.argmin(losses))])


def likeliest_rooms(probabilities):
    """For each row the likeliest bin that isn't a kind of shot, and how probable it is."""
    rooms = probabilities[:, ROOMS]
    return numpy.array(ROOMS)[rooms.argmax(axis=1)], rooms.max(axis=1)


def is_right(filed, bins, alternatives):
    return (filed == bins) | (filed == alternatives)


def counted(bins):
    """Aerial and agent items are told by other signs, and those without a house have no right bin."""
    return ~numpy.isin(bins, [*EXCLUSIVE, NOTHING])
