"""Writes the head as RoomHead reads it, the card's tables and the picture of the confusions."""
import hashlib
import struct

import numpy

from room_data import BINS

MAGIC = b"LKROOMS\n"
VERSION = 2  # 1 was read from other features


def _layer(weights, bias):
    return weights.astype("<f2").tobytes() + bias.astype("<f4").tobytes()


def write_head(path, scaling, hidden, out, print_map, identifiers, caution):
    """hidden, out and print_map are pairs of weights (a row for each output) and bias; caution as in RoomHead."""
    names = "\n".join(identifiers).encode()
    data = MAGIC + struct.pack("<5I", VERSION, hidden[0].shape[1], hidden[0].shape[0], print_map[0].shape[0],
                               len(names)) + names
    data += scaling.mean.astype("<f4").tobytes() + scaling.spread.astype("<f4").tobytes()
    data += _layer(*hidden) + _layer(*out) + _layer(*print_map) + numpy.array(caution, "<f4").tobytes()
    path.write_bytes(data + hashlib.sha256(data).digest())


def bin_table(bins, filed, review):
    """Markdown: how each bin fares. filed and review as room_rules.file gives them."""
    lines = ["| bin | photos | recall | precision | to review |", "|---|---|---|---|---|"]
    for index, name in enumerate(BINS):
        of_bin, in_bin = bins == index, filed == index
        if not of_bin.any():
            continue
        precision = f"{(bins[in_bin] == index).mean():.0%}" if in_bin.any() else "-"
        lines.append(f"| {name} | {of_bin.sum()} | {(filed[of_bin] == index).mean():.0%} | {precision} | "
                     f"{review[of_bin].mean():.0%} |")
    return "\n".join(lines)


def confusion_picture(path, bins, filed):
    """Rows: what it is; columns: where it is filed, the last being no bin. Shades by the share of the row."""
    from PIL import Image, ImageDraw, ImageFont
    cell, left, top = 44, 190, 170
    names = BINS + ["Unsorted"]
    image = Image.new("RGB", (left + cell * len(names) + 20, top + cell * len(BINS) + 20), "white")
    draw = ImageDraw.Draw(image)
    try:
        font = ImageFont.truetype("DejaVuSans.ttf", 14)
    except OSError:
        font = ImageFont.load_default()
    for column, name in enumerate(names):
        label = Image.new("RGB", (160, 20), "white")
        ImageDraw.Draw(label).text((0, 2), name, "black", font)
        image.paste(label.rotate(90, expand=True), (left + column * cell + 12, top - 165))
    for row, name in enumerate(BINS):
        y = top + row * cell
        draw.text((8, y + 14), name, "black", font)
        of_bin = filed[bins == row]
        for column in range(len(names)):
            wanted = column if column < len(BINS) else -1
            share = (of_bin == wanted).mean() if len(of_bin) else 0.0
            x = left + column * cell
            tint = int(255 * (1 - share))
            color = (tint, 255 - (255 - tint) // 3, tint) if row == column else (255, tint, tint)
            draw.rectangle((x, y, x + cell - 1, y + cell - 1), color, "#dddddd")
            if share >= 0.005:
                draw.text((x + 10, y + 14), f"{share * 100:.0f}", "black", font)
    image.save(path, optimize=True)


def write_tables(path, temperature, least_sure, trade_off, sites, table, held_out, prints):
    """Puts the figures where the card keeps them; the words around them are written by hand."""
    begin, end = "<!-- measured: written by train_rooms.py -->\n", "<!-- end of measured -->"
    before, _, rest = path.read_text("utf-8").partition(begin)
    _, _, after = rest.partition(end)
    measured = f"""Temperature {temperature:.2f}; a frame is sure from a probability of {least_sure:.2f} on.

Each photo of a site judged by a head that never saw the site: {sites}.

{table}

What another threshold would send to review there (aerial and agent clips left out):

{trade_off}

The head that ships, on what it was neither trained nor calibrated on:

{held_out}

Distances of prints, on photos held out:

| views | one room <= 12 | <= 15 | < 20 | two rooms >= 20 | >= 23 |
|---|---|---|---|---|---|
{prints}

"""
    path.write_text(before + begin + measured + end + after, "utf-8")
