"""How probable a room must be before it is filed without a question: a bar for each bin, for photos and for clips."""

import numpy

from room_data import BINS, EXCLUSIVE, NOTHING

# The bins that catch what looks like none of the others. On clips they are wrong far more often than on photos, whose
# takers choose what they show.
CATCH_ALL = [BINS.index(name) for name in ("Office", "Laundry Room", "Garage", "Closet", "Exterior Detail",
                                           "Interior Detail", "Amenities / Other")]
# A clip counts for several photos, as there are few.
CLIP_WEIGHT, REAL_CLIP_WEIGHT = 3.0, 6.0
# The pull of a bin's own term towards none, and that of the two terms for clips.
BIN_PENALTY, CLIP_PENALTY = 5.0, 0.1
# A room that is less probable than this has rivals, whatever its bin.
LEAST_BAR = 0.3
_STEPS = 30


def _terms(filed, probability, is_clip):
    """A row for each item: 1, the logit, whether it is a clip of another bin, whether one of a catch-all, the bins."""
    probability = numpy.clip(probability, 1e-4, 1 - 1e-4)
    caught = numpy.isin(filed, CATCH_ALL)
    return numpy.column_stack([numpy.ones(len(filed)), numpy.log(probability / (1 - probability)), is_clip & ~caught,
                               is_clip & caught, numpy.eye(len(BINS))[filed]]).astype(float)


class Surety:
    """How likely what is filed is right, by logistic regression on items whose sites the head had not seen."""

    def __init__(self, filed, probability, is_clip, right, weights):
        terms = _terms(filed, probability, is_clip)
        penalty = numpy.array([0.0, 0.0, CLIP_PENALTY, CLIP_PENALTY] + [BIN_PENALTY] * len(BINS))
        self.factors = numpy.zeros(terms.shape[1])
        self.factors[1] = 1.0
        for _ in range(_STEPS):  # Newton's
            expected = 1 / (1 + numpy.exp(-terms @ self.factors))
            slope = terms.T @ (weights * (expected - right)) + penalty * self.factors
            curve = (terms * (weights * expected * (1 - expected))[:, None]).T @ terms + numpy.diag(penalty + 1e-9)
            self.factors -= numpy.linalg.solve(curve, slope)

    def __call__(self, filed, probability, is_clip):
        return 1 / (1 + numpy.exp(-_terms(filed, probability, is_clip) @ self.factors))

    def bars(self, wanted, is_clip):
        """For each bin the probability from which on what is filed there is right as surely as wanted."""
        bins = numpy.arange(len(BINS))
        even = numpy.full(len(BINS), 0.5)
        # The logit of an even chance is 0, so this is all but the logit's part.
        rest = _terms(bins, even, numpy.full(len(BINS), is_clip)) @ self.factors
        bars = 1 / (1 + numpy.exp(-(numpy.log(wanted / (1 - wanted)) - rest) / self.factors[1]))
        return numpy.maximum(bars, LEAST_BAR)


def weights_of(pictures, rows):
    """Items of aerial shots and agents have no say: other signs tell them. What shows no house must not be filed."""
    sources = pictures.sources[rows]
    weights = numpy.where(sources == "clips-real", REAL_CLIP_WEIGHT, numpy.where(pictures.is_clip[rows], CLIP_WEIGHT, 1.0))
    return weights * ~numpy.isin(pictures.bins[rows], list(EXCLUSIVE))


def right_of(pictures, rows, filed):
    bins = pictures.bins[rows]
    return ((filed == bins) | (filed == pictures.alternatives[rows])) & (bins != NOTHING)
