"""What the program makes of the head's word: RoomHead, RoomEvidence and the bin rules, for the fitting of thresholds.
The figures that count come from the program itself (bench/classify_photos)."""
import numpy

from room_data import BINS, EXCLUSIVE, NOTHING

LEAST_EVIDENCE = 0.06
LITTLE_TO_GO_ON = 0.18
UNSURE_SHARE = 0.2
UNSURE_FLOOR = 0.065

# The detector's kinds that feed a bin, by their number; people are a matter of their own.
OBJECTS = {57: "Living Room", 58: "Exterior Detail", 59: "Bedroom", 60: "Dining Room", 61: "Bathroom",
           62: "Living Room", 63: "Office", 68: "Kitchen", 69: "Kitchen", 71: "Bathroom", 72: "Kitchen",
           73: "Interior Detail", 75: "Interior Detail"}


def evidence(probabilities, objects, least_sure):
    """What each row says for each bin."""
    places = probabilities[:, :NOTHING]
    sure = places.max(axis=1, keepdims=True) >= least_sure
    scenes = numpy.where(sure, places,
                         places * UNSURE_SHARE + UNSURE_FLOOR * (1 - probabilities[:, NOTHING:]))
    trust = numpy.where(sure, places, places * UNSURE_SHARE)
    total = numpy.where(scenes >= LEAST_EVIDENCE, scenes, 0.0)
    for kind, name in OBJECTS.items():
        bin_index = BINS.index(name)
        said = objects[:, kind] * trust[:, bin_index]
        total[:, bin_index] += numpy.where(said >= LEAST_EVIDENCE, said, 0.0)
    return total


def file(probabilities, objects, least_sure):
    """For each row the bin it is filed in (-1: none), its share of all evidence, and whether it goes to review."""
    said = evidence(probabilities, objects, least_sure)
    ranked = said.copy()
    ranked[:, list(EXCLUSIVE)] = 0.0
    best = ranked.argmax(axis=1)
    share = ranked.max(axis=1) / numpy.maximum(said.sum(axis=1), 1e-4)
    filed = numpy.where(ranked.max(axis=1) > 0, best, -1)
    return filed, share, (filed < 0) | (share < LITTLE_TO_GO_ON)


def least_sure(probabilities, objects, bins, filed_right):
    """The lowest threshold at which so many of what isn't sent to review are right."""
    for threshold in numpy.arange(0.4, 0.96, 0.01):
        filed, _, review = file(probabilities, objects, threshold)
        if (filed == bins)[~review].mean() >= filed_right:
            return float(threshold)
    raise SystemExit("no threshold makes so many right")


def trade_off(probabilities, objects, bins):
    """Markdown: for several thresholds what goes to review, and how much of the rest is right."""
    lines = ["| sure from | to review | of the rest right |", "|---|---|---|"]
    for threshold in (0.4, 0.5, 0.6, 0.65, 0.7, 0.75, 0.8, 0.85, 0.9):
        filed, _, review = file(probabilities, objects, threshold)
        lines.append(f"| {threshold:.2f} | {review.mean():.0%} | {(filed == bins)[~review].mean():.0%} |")
    return "\n".join(lines)
