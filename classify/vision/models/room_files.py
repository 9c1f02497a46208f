"""Writes the head as RoomHead reads it, and the card's tables."""

import hashlib
import struct

import numpy

from room_data import BINS, COMMON
from room_head import counted, is_right

MAGIC = b"LKROOMS\n"
VERSION = 3  # 1 and 2 were read from other features


def _layer(weights, bias):
    return weights.astype("<f2").tobytes() + bias.astype("<f4").tobytes()


def write_head(path, scaling, place, print_map, identifiers, photo_bars, clip_bars, rest):
    """place and print_map are pairs of weights (a row for each output) and bias; bars and the rest as in RoomHead."""
    names = "\n".join(identifiers).encode()
    data = MAGIC + struct.pack("<4I", VERSION, place[0].shape[1], print_map[0].shape[0], len(names)) + names
    data += scaling.mean.astype("<f4").tobytes() + scaling.spread.astype("<f4").tobytes()
    data += _layer(*place) + _layer(*print_map)
    data += numpy.concatenate([photo_bars, clip_bars, rest]).astype("<f4").tobytes()
    path.write_bytes(data + hashlib.sha256(data).digest())


def summary(bins, alternatives, filed, sure):
    """The figures in a line."""
    use = counted(bins)
    bins, right, sure = bins[use], is_right(filed, bins, alternatives)[use], sure[use]
    recalls = [right[bins == index].mean() for index in numpy.unique(bins)]
    common = numpy.isin(bins, COMMON)
    return (f"{len(bins)}: {right.mean():.1%} right; {(~sure).mean():.1%} to review, of the rest "
            f"{right[sure].mean():.1%} right; the seven common bins {right[common].mean():.1%}, mean recall "
            f"{numpy.mean(recalls):.1%}")


def bin_table(bins, alternatives, filed, sure):
    """Markdown: how each bin fares."""
    lines = ["| bin | photos | recall | precision | to review |", "|---|---|---|---|---|"]
    right = is_right(filed, bins, alternatives)
    for index, name in enumerate(BINS):
        of_bin, in_bin = bins == index, filed == index
        if not of_bin.any() or not counted(numpy.array([index]))[0]:
            continue
        precision = f"{right[in_bin].mean():.0%}" if in_bin.any() else "-"
        lines.append(f"| {name} | {of_bin.sum()} | {right[of_bin].mean():.0%} | {precision} | "
                     f"{(~sure[of_bin]).mean():.0%} |")
    return "\n".join(lines)


def trade_off(groups):
    """Markdown: for several demands what goes to review, and how much of the rest is right.

    groups: by name the bins, second bins, filed bins and how sure those are.
    """
    lines = ["| as sure as | " + " | ".join(f"{name}: to review | of the rest right" for name in groups) + " |",
             "|---" * (1 + 2 * len(groups)) + "|"]
    for least in (0.5, 0.6, 0.65, 0.7, 0.75, 0.8, 0.85, 0.9):
        cells = []
        for bins, alternatives, filed, probability in groups.values():
            use = counted(bins)
            sure = use & (probability >= least)
            cells += [f"{1 - sure.sum() / use.sum():.0%}", f"{is_right(filed, bins, alternatives)[sure].mean():.0%}"]
        lines.append(f"| {least:.2f} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def write_lists(folder, pictures, chosen):
    """The pictures chosen as classify_photos and classify_clips read them: photos of further sites, and real clips."""
    def name(index):
        return BINS[index] if 0 <= index < len(BINS) else "Unsorted" if index >= 0 else ""
    photos, clips = [], []
    for row in numpy.nonzero(chosen)[0]:
        labels = [name(pictures.bins[row]), name(pictures.alternatives[row])]
        path = str(pictures.folder.resolve() / pictures.paths[row])
        if pictures.sources[row] == "sites2":
            photos.append([labels[0], path, labels[1]])
        elif pictures.sources[row] == "clips-real" and path.endswith("_1.jpg"):
            clips.append([pictures.paths[row], *labels] + [path.replace("_1.jpg", f"_{i}.jpg") for i in range(1, 5)])
    for file, lines in (("photos.tsv", photos), ("clips.tsv", clips)):
        (folder / file).write_text("".join("\t".join(line) + "\n" for line in lines), "utf-8")


def write_tables(path, text):
    """Puts the figures where the card keeps them; the words around them are written by hand."""
    begin, end = "<!-- measured: written by train_rooms.py -->\n", "<!-- end of measured -->"
    before, _, rest = path.read_text("utf-8").partition(begin)
    _, _, after = rest.partition(end)
    path.write_text(before + begin + text + "\n\n" + end + after, "utf-8")
