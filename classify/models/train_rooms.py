#!/usr/bin/python3
"""Trains the head for rooms and its print, measures them on sites not trained on, and writes the head and its tables.

    train_rooms.py PHOTOS CACHE [--program photo_features] [--out resources] [--picture docs/rooms-confusion.png]

PHOTOS holds photos.tsv and the photos; CACHE keeps what the detector sees in their views. Needs the distribution's
python3-torch, python3-numpy and python3-pil; libopenblas0 makes it ten times as fast.
The same photos, program and seeds give the same head.
"""
import argparse
import os
import pathlib

os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")  # sums in one order
import numpy
import torch

import room_data
import room_files
import room_head
import room_print
import room_rules
from room_data import BINS, EMPTY_FRAMES, SCENES, SITE_FOLDS

ROOT = pathlib.Path(__file__).resolve().parents[2]
SEEDS = (1, 2, 3, 4)
# Of what is filed without a question, at least so many must be right on sites not trained on. More would send more than
# half of all clips to review; the card shows the trade-off.
FILED_RIGHT = 0.9
# What a photo of a source weighs beside one of a property site, which is what the program is shown.
SOURCE_WEIGHTS = {"sites": 1.0, "sites-rendered": 0.3}
OTHER_WEIGHT = 0.25
EMPTY_WEIGHT = 0.15
BALANCE = 0.65  # 0: a bin weighs as its photos do, 1: all bins alike
# The linear map does best on sites with less of the other sources; the hidden layers then keep it good on listings.
LINEAR_OTHER_WEIGHT = 0.1
# What each has to say in the logits: the hidden layers' are logits themselves, the map's lie between 0 and 1.
HIDDEN_SHARE, LINEAR_SHARE = 0.5, 6.0
# The map's weights are small, and half precision knows small numbers badly: they are written so many times as large.
LINEAR_SCALE = 64.0
COMMON = ["Kitchen", "Bathroom", "Bedroom", "Living Room", "Dining Room", "Exterior Front", "Pool"]
# In units of the splitting rules. On pairs of photos held out, two rooms of one kind come apart in 99 of 100 even when
# they were shot within minutes of each other. Of made shoots of two kitchens and two bathrooms, at 24 two rooms ran into
# one; at 32 none fell apart, but a third fewer pairs of takes are sure to be of one room.
PRINT_LENGTH = 26.0


class Training:
    def __init__(self, photos, views, features, objects):
        self.photos, self.views, self.features, self.objects = photos, views, features, objects
        self.bins = numpy.where(views.photo < 0, -1, photos.bins[views.photo])

    def rows_without(self, folds):
        """Views to train on: nothing held out, no photo of the folds given."""
        left_out = self.photos.held_out | numpy.isin(self.photos.folds, folds)
        # Every fourth empty frame is kept for measuring.
        kept = numpy.array([room_data.is_kept_for_measuring(number) for number in self.views.number])
        empty = (self.views.photo < 0) & (self.views.number >= 0) & ~kept
        return numpy.nonzero(empty | ((self.views.photo >= 0) & (self.views.number >= 0) &
                                     ~left_out[self.views.photo]))[0]

    def plain_rows(self, photo_mask):
        return numpy.nonzero((self.views.number == 0) & (self.views.photo >= 0) & photo_mask[self.views.photo])[0]

    def weights(self, rows, other=OTHER_WEIGHT):
        """Each photo shares its source's weight among its views, each bin weighs more than its photos if it has few."""
        photo = self.views.photo[rows]
        views_of = numpy.bincount(photo[photo >= 0], minlength=len(self.photos))
        source = [SOURCE_WEIGHTS.get(name, other) for name in self.photos.sources]
        weight = numpy.where(photo >= 0, numpy.array(source)[photo] / numpy.maximum(views_of[photo], 1),
                             80 * EMPTY_WEIGHT / EMPTY_FRAMES)
        bins = self.bins[rows] + 1
        return weight / numpy.bincount(bins, weight, minlength=len(BINS) + 1)[bins] ** BALANCE

    def learn(self, rows, seeds):
        scaling = room_head.Scaling(self.features[rows])
        inputs, targets = scaling(self.features[rows]), room_head.one_hot(self.bins[rows])
        heads = [room_head.train(inputs, targets, self.weights(rows), seed) for seed in seeds]
        weights = self.weights(rows, LINEAR_OTHER_WEIGHT)
        # A photo as it is weighs as much as all the views made of it.
        views_of = numpy.bincount(self.views.photo[rows] + 1)[self.views.photo[rows] + 1]
        plain = (self.views.photo[rows] >= 0) & (self.views.number[rows] == 0)
        weights = weights * numpy.where(plain, numpy.maximum(views_of - 1, 1), 1)
        return Learnt(scaling, heads, room_head.fit_linear(inputs, targets, weights))

    def said(self, learnt, rows):
        """Logits of the views in rows, each also looked at more closely."""
        return (learnt.logits(self.features[rows]) + learnt.logits(self.features[self.views.closer(rows)])) / 2


class Learnt:
    """What a training comes to: heads of several seeds and the linear map."""

    def __init__(self, scaling, heads, linear):
        self.scaling, self.heads, self.linear = scaling, heads, linear

    def logits(self, features):
        inputs = self.scaling(features)
        hidden = sum(room_head.logits(head, inputs) for head in self.heads) / len(self.heads)
        return HIDDEN_SHARE * hidden + LINEAR_SHARE * (inputs @ self.linear[0].T + self.linear[1])

    def joined(self, temperature):
        """All as one hidden layer and one above it: the heads' units side by side, and for each output of the linear
        map two units, one for what is above zero and one for what is below."""
        weights, bias = (part * LINEAR_SCALE for part in self.linear)
        hidden = (numpy.concatenate([h.hidden.weight.detach().numpy() for h in self.heads] + [weights, -weights]),
                  numpy.concatenate([h.hidden.bias.detach().numpy() for h in self.heads] + [bias, -bias]))
        share = HIDDEN_SHARE / (len(self.heads) * temperature)
        slope = numpy.eye(room_head.OUTPUTS) * (LINEAR_SHARE / (LINEAR_SCALE * temperature))
        out = (numpy.concatenate([h.out.weight.detach().numpy() * share for h in self.heads] + [slope, -slope], axis=1),
               sum(h.out.bias.detach().numpy() for h in self.heads) * share)
        return hidden, out


def temperature_of(logits, bins):
    """The one number that makes the probabilities as likely as they are right."""
    steps = numpy.arange(0.5, 3.0, 0.02)
    losses = [-numpy.log(room_head.softmax(logits / t)[numpy.arange(len(bins)), bins] + 1e-9).mean() for t in steps]
    return float(steps[int(numpy.argmin(losses))])


def summary(bins, filed, review, share):
    """The figures in a line. Aerial and agent clips are told by other signs, so they don't count here."""
    counted = ~numpy.isin(bins, list(room_data.EXCLUSIVE))
    bins, filed, review, share = bins[counted], filed[counted], review[counted], share[counted]
    right = filed == bins
    recalls = [right[bins == index].mean() for index in range(len(BINS)) if (bins == index).sum() >= 15]
    common = numpy.isin(bins, [BINS.index(name) for name in COMMON])
    steps = numpy.minimum((share * 10).astype(int), 9)
    off = sum(abs((right[steps == s] - share[steps == s]).sum()) for s in range(10)) / len(bins)
    return (f"{len(bins)} photos: {right.mean():.1%} right, the seven common bins {right[common].mean():.1%}, mean "
            f"recall of the {len(recalls)} bins with 15 photos or more {numpy.mean(recalls):.1%}; {review.mean():.1%} "
            f"to review, of the rest {right[~review].mean():.1%} right; calibration error {off:.3f}")


def measured(training, rows, logits, temperature, least_sure):
    probabilities = room_head.softmax(logits / temperature)
    return room_rules.file(probabilities, training.objects[rows], least_sure)


def cross_validate(training):
    """Rows of site photos with the logits of a head that never saw their site."""
    photos = training.photos
    rows, logits = [], []
    for fold in range(1, SITE_FOLDS):
        test = training.plain_rows((photos.folds == fold) & (photos.sources == "sites"))
        learnt = training.learn(training.rows_without([fold]), SEEDS[:1])
        rows.append(test)
        logits.append(training.said(learnt, test))
        print(f"fold {fold}: {(logits[-1][:, :len(BINS)].argmax(axis=1) == training.bins[test]).mean():.1%} of "
              f"{len(test)}", flush=True)
    return numpy.concatenate(rows), numpy.concatenate(logits)


def fit_print(training, scaling, rows):
    """The print's map, and what its distances are on photos held out."""
    moved = rows[(training.views.photo[rows] >= 0) & (training.views.number[rows] > 0)]
    photos = training.photos
    mapping = room_print.fit(scaling(training.features[moved]), training.views.photo[moved], photos.bins)
    rooms = numpy.isin(photos.bins, [BINS.index(name) for name in COMMON[:5]]) & photos.held_out
    views = training.views
    houses = numpy.where(numpy.char.find(photos.sites, "/") >= 0, photos.sites, "")
    lines = []
    for name, numbers in (("as a shoot frames them", (1, 2)), ("strong crops, tilt, light", (1, 2, 3, 4, 5, 6, 7))):
        at = numpy.nonzero((views.photo >= 0) & rooms[views.photo] & numpy.isin(views.number, numbers))[0]
        values = room_print.prints(scaling(training.features[at]), *mapping) * PRINT_LENGTH
        same, other = room_print.pairs(values, views.photo[at], photos.bins, houses)
        lines.append(f"| {name} | {(same <= 12).mean():.0%} | {(same <= 15).mean():.0%} | {(same < 20).mean():.0%} | "
                     f"{(other >= 20).mean():.0%} | {(other >= 23).mean():.0%} |")
    return mapping, "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("photos")
    parser.add_argument("cache")
    parser.add_argument("--program", default=ROOT / "build/release/classify/photo_features")
    parser.add_argument("--out", type=pathlib.Path, default=ROOT / "resources")
    parser.add_argument("--picture", type=pathlib.Path, default=ROOT / "docs/rooms-confusion.png")
    args = parser.parse_args()
    torch.set_num_threads(1)
    torch.use_deterministic_algorithms(True)

    photos = room_data.Photos(args.photos)
    views = room_data.list_views(photos)
    training = Training(photos, views, *room_data.look(photos, views, args.program, args.cache))

    rows, logits = cross_validate(training)
    bins = training.bins[rows]
    # For whoever wants to try other thresholds.
    numpy.savez(pathlib.Path(args.cache) / "cross_validated.npz", rows=rows, logits=logits)
    temperature = temperature_of(logits, bins)
    counted = ~numpy.isin(bins, list(room_data.EXCLUSIVE))
    calibration = (room_head.softmax(logits / temperature)[counted], training.objects[rows][counted], bins[counted])
    least_sure = room_rules.least_sure(*calibration, FILED_RIGHT)
    trade_off = room_rules.trade_off(*calibration)
    print(f"temperature {temperature:.2f}, sure from {least_sure:.2f}\n{trade_off}")
    filed, share, review = measured(training, rows, logits, temperature, least_sure)
    table = room_files.bin_table(bins, filed, review)
    print(f"Sites, each by a head that never saw it:\n{summary(bins, filed, review, share)}\n{table}", flush=True)

    rows_of_all = training.rows_without([])
    learnt = training.learn(rows_of_all, SEEDS)
    lines = []
    for name, mask in (("sites held out", (photos.folds == 0) & (photos.sources == "sites")),
                       ("rooms-b-valid", photos.sources == "rooms-b-valid")):
        test = training.plain_rows(mask)
        result = measured(training, test, training.said(learnt, test), temperature, least_sure)
        lines.append(f"- {name}: {summary(training.bins[test], result[0], result[2], result[1])}")
        print(f"{lines[-1]}\n{room_files.bin_table(training.bins[test], result[0], result[2])}", flush=True)
    kept = numpy.array([room_data.is_kept_for_measuring(number) for number in views.number])
    empty = numpy.nonzero((views.photo < 0) & kept)[0]
    unseen = measured(training, empty, training.said(learnt, empty), temperature, least_sure)
    lines.append(f"- {len(empty)} empty frames: {unseen[2].mean():.1%} to review")
    print(lines[-1])

    mapping, print_lines = fit_print(training, learnt.scaling, rows_of_all)
    print(print_lines)
    args.out.mkdir(parents=True, exist_ok=True)
    args.picture.parent.mkdir(parents=True, exist_ok=True)
    room_files.write_head(args.out / "rooms.head", learnt.scaling, *learnt.joined(temperature), mapping,
                          [SCENES[name] for name in BINS],
                          (least_sure, room_rules.UNSURE_SHARE, room_rules.UNSURE_FLOOR, PRINT_LENGTH))
    room_files.write_tables(args.out / "rooms.md", temperature=temperature, least_sure=least_sure, trade_off=trade_off,
                            sites=summary(bins, filed, review, share), table=table, held_out="\n".join(lines),
                            prints=print_lines)
    room_files.confusion_picture(args.picture, bins, filed)


if __name__ == "__main__":
    main()
