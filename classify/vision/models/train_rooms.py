#!/usr/bin/python3
"""Trains the head for rooms and its print, measures them on sites not trained on, and writes the head and its tables.

    train_rooms.py DATA CACHE [--models FOLDER] [--out resources] [--without-half]

DATA holds photos.tsv, clips.tsv and the pictures; CACHE keeps what the networks see in them; the models are those that
script/fetch-models left. Needs what training-requirements.txt pins. The same pictures and models give the same head.
With --without-half it trains on half of the sites alone and lists the others in the output folder, for the benches.
"""

import argparse
import os
import pathlib

os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")  # sums in one order
import numpy

import room_bars
import room_files
import room_head
import room_print
from room_data import EXCLUSIVE, FOLDS, FRAMES, HELD_OUT_SOURCE, NONE, NOTHING, Pictures, SCENES, SPLITS
from room_looks import Looks

ROOT = pathlib.Path(__file__).resolve().parents[3]
# Filed without a question is what is right as surely as this; the card shows the trade-off. A clip has four frames to be
# unsure of, and more than half of what is unsure there is right.
SURE_PHOTO, SURE_CLIP = 0.78, 0.65
# An unsure clip keeps a little evidence of every place, so that none has a share that the rules file.
UNSURE_SHARE, UNSURE_FLOOR = 0.2, 0.065
NO_PLACE = 0.5
# In units of the splitting rules, which take 3 off for clips shot within minutes of each other: rooms must be 23 apart
# then. Two rooms in one are worse than one room in two.
PRINT_LENGTH = 25.0


class Items:
    """Photos of sites and clips, each once for every split, as a head judged them that never saw their site: the bin that
    each is filed in, and how probable that is."""

    def __init__(self, pictures, said, sharpness, rows):
        photos = rows[pictures.is_site[rows]]
        frames = rows[pictures.is_clip[rows]]
        once = numpy.concatenate([photos, frames[::FRAMES]])
        self.rows = numpy.tile(once, SPLITS)
        self.split = numpy.repeat(numpy.arange(SPLITS), len(once))
        self.is_clip = pictures.is_clip[self.rows]
        together = numpy.concatenate([part for each in said
                                      for part in (each[photos], room_head.of_clips(each[frames]))])
        self.filed, self.probability = room_head.likeliest_rooms(room_head.softmax(together * sharpness))
        self.right = room_bars.right_of(pictures, self.rows, self.filed)
        self.weights = room_bars.weights_of(pictures, self.rows) / SPLITS

    def surety(self, chosen):
        """The surety of what is filed, fitted to the items chosen."""
        return room_bars.Surety(self.filed[chosen], self.probability[chosen], self.is_clip[chosen],
                                self.right[chosen], self.weights[chosen])

    def cross_fitted(self, pictures):
        """How sure each item is, by a surety fitted without the sites of its fold."""
        sure = numpy.zeros(len(self.rows))
        for split in range(SPLITS):
            folds = pictures.folds[split][self.rows]
            for fold in range(FOLDS):
                judged = (self.split == split) & (folds == fold)
                sure[judged] = self.surety(folds != fold)(self.filed[judged], self.probability[judged],
                                                          self.is_clip[judged])
        return sure


class Training:
    def __init__(self, pictures, features, left_out):
        self.pictures = pictures
        known = numpy.nonzero((pictures.bins != NONE) & ~left_out)[0]
        self.rows = known[pictures.sources[known] != HELD_OUT_SOURCE]
        self.scaling = room_head.Scaling(features[self.rows])
        self.inputs = self.scaling(features)
        self.products = self.inputs @ self.inputs.T / self.inputs.shape[1]

    def said_by_others(self, folds):
        """What heads say that never saw the picture's site."""
        said = numpy.zeros((len(self.pictures), NOTHING + 1), numpy.float32)
        for fold in range(FOLDS):
            rows = self.rows[folds[self.rows] != fold]
            judged = numpy.nonzero(folds == fold)[0]
            said[judged] = (self.products[numpy.ix_(judged, rows)] + 1) @ room_head.dual(self.products, self.pictures, rows)
        return said

    def learn(self):
        """Weights of the inputs, a row for each output, and the bias."""
        share = room_head.dual(self.products, self.pictures, self.rows)
        return share.T @ self.inputs[self.rows] / self.inputs.shape[1], share.sum(axis=0)


def fit_print(training):
    """The print's map, and a line of what its distances are on clips of sites that it wasn't fitted on."""
    pictures = training.pictures
    rows = training.rows[pictures.is_clip[training.rows] & (pictures.bins[training.rows] != NOTHING)]
    clip = numpy.array([pictures.paths[row].rpartition("_")[0] for row in rows])
    axes = room_print.directions(training.inputs[training.rows])
    projected = training.inputs[rows] @ axes
    same, other = [], []
    for fold in range(FOLDS):
        fitted, judged = pictures.folds[0][rows] != fold, pictures.folds[0][rows] == fold
        mapping = room_print.fit(projected[fitted], clip[fitted], pictures.bins[rows][fitted])
        values = room_print.prints(projected[judged], *mapping) * PRINT_LENGTH
        near, far = room_print.pairs(values, clip[judged], pictures.bins[rows][judged], pictures.sites[rows][judged])
        same.append(near)
        other.append(far)
    same, other = numpy.concatenate(same), numpy.concatenate(other)
    line = (f"| {(same <= 12).mean():.0%} | {(same <= 15).mean():.0%} | {(same < 20).mean():.0%} | "
            f"{(other >= 20).mean():.1%} | {(other >= 23).mean():.1%} |")
    weights, bias = room_print.fit(projected, clip, pictures.bins[rows])
    return (weights @ axes.T, bias), line


def report(pictures, items, sure, listings, prints):
    bars = numpy.where(items.is_clip, SURE_CLIP, SURE_PHOTO)
    sources = pictures.sources[items.rows]
    groups = {"photos of sites": sources == "sites", "of further sites": sources == "sites2",
              "real clips": sources == "clips-real", "all clips": items.is_clip}
    bins, second = pictures.bins[items.rows], pictures.alternatives[items.rows]
    lines = [f"Each judged {SPLITS} times by a head, and by bars, that never saw its site, the sites sorted into folds in as "
             "many ways (so the numbers of photos and clips below are that many times theirs):", ""]
    for name, chosen in groups.items():
        lines.append(f"- {name}: "
                     f"{room_files.summary(bins[chosen], second[chosen], items.filed[chosen], (sure >= bars)[chosen])}")
    empty = (bins == NOTHING) & (sources == "clips-real")
    photos = groups["photos of sites"] | groups["of further sites"]
    lines += [f"- real clips that show no house: {(sure >= bars)[empty].sum()} of {empty.sum()} filed", "",
              "Photos of sites, by bin:", "",
              room_files.bin_table(bins[photos], second[photos], items.filed[photos], (sure >= bars)[photos]), "",
              "If less or more had to be sure:", "",
              room_files.trade_off({name: (bins[chosen], second[chosen], items.filed[chosen], sure[chosen])
                                    for name, chosen in groups.items()}), "",
              "The head that ships, on listing photos that it wasn't trained on:", "",
              f"- {HELD_OUT_SOURCE}: {listings}", "",
              "Distances of prints, of clips of sites that they weren't fitted on; the first and the last frame of a clip, "
              "and rooms of one kind at two sites:", "",
              "| one clip <= 12 | <= 15 | < 20 | two rooms >= 20 | >= 23 |", "|---" * 5 + "|", prints]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("data")
    parser.add_argument("cache")
    parser.add_argument("--models", default=ROOT / "build/deps/models")
    parser.add_argument("--out", type=pathlib.Path, default=ROOT / "resources")
    parser.add_argument("--without-half", action="store_true")
    args = parser.parse_args()

    pictures = Pictures(args.data)
    features = Looks(args.models, args.cache).features(args.data, pictures.paths)
    left_out = pictures.half() if args.without_half else numpy.zeros(len(pictures), bool)
    training = Training(pictures, features, left_out)
    said = [training.said_by_others(folds) for folds in pictures.folds]
    judged = numpy.nonzero((pictures.is_site | pictures.is_clip) & (pictures.bins != NONE) & ~left_out)[0]
    counted = judged[~numpy.isin(pictures.bins[judged], list(EXCLUSIVE))]
    sharpness = room_head.sharpness_of(said[0][counted], room_head.targets_of(pictures, counted))
    items = Items(pictures, said, sharpness, judged[~numpy.char.endswith(pictures.sources[judged], "-rendered")])
    surety = items.surety(slice(None))
    photo_bars, clip_bars = surety.bars(SURE_PHOTO, False), surety.bars(SURE_CLIP, True)

    weights, bias = training.learn()
    held_out = numpy.nonzero(pictures.sources == HELD_OUT_SOURCE)[0]
    filed, probability = room_head.likeliest_rooms(
        room_head.softmax((training.inputs[held_out] @ weights.T + bias) * sharpness))
    listings = room_files.summary(pictures.bins[held_out], pictures.alternatives[held_out], filed,
                                  probability >= photo_bars[filed])
    print_map, prints = fit_print(training)
    text = report(pictures, items, items.cross_fitted(pictures), listings, prints)
    print(text)
    args.out.mkdir(parents=True, exist_ok=True)
    room_files.write_head(args.out / "rooms.head", training.scaling, (weights * sharpness, bias * sharpness), print_map,
                          list(SCENES.values()), photo_bars, clip_bars,
                          (UNSURE_SHARE, UNSURE_FLOOR, NO_PLACE, PRINT_LENGTH))
    if args.without_half:
        room_files.write_lists(args.out, pictures, left_out)
    else:
        room_files.write_tables(args.out / "rooms.md", text)
    print(f"sharpness {sharpness:.2f}, bars for photos {photo_bars.round(2)}, for clips {clip_bars.round(2)}")


if __name__ == "__main__":
    main()
