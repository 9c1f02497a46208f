"""The labelled photos, how they are split, and what the detector sees in views of them."""
import hashlib
import pathlib
import subprocess

import numpy

FEATURES = 2960
KINDS = 80
RECORD = FEATURES + KINDS
EMPTY_FRAMES = 480

# One scene identifier of the taxonomy for each bin; the last output of the head is "shows nothing".
SCENES = {
    "Kitchen": "kitchen",
    "Bathroom": "bathroom",
    "Bedroom": "bedroom",
    "Living Room": "living_room",
    "Dining Room": "dining_room",
    "Office": "office",
    "Laundry Room": "laundry_room",
    "Garage": "garage",
    "Hallway / Stairs": "hallway",
    "Closet": "closet",
    "Exterior Front": "facade",
    "Entry / Courtyard": "courtyard",
    "Exterior Back": "backyard",
    "Pool": "swimming_pool",
    "Aerial / Drone": "aerial_photography",
    "Agent / Talent": "portrait",
    "Exterior Detail": "foliage",
    "Interior Detail": "still_life",
    "Amenities / Other": "gym",
}
BINS = list(SCENES)
NOTHING = len(BINS)
EXCLUSIVE = {BINS.index("Aerial / Drone"), BINS.index("Agent / Talent")}

# How many views of a photo are looked at: few photos need many.
VIEWS = {"sites": 8, "sites-rendered": 5, "rooms-a": 3, "rooms-b": 3, "rooms-b-valid": 4}
OTHER_VIEWS = 4

# Never trained on, never calibrated on: the figures of the card are theirs.
HELD_OUT_SOURCE = "rooms-b-valid"
SITE_FOLDS = 6


class Photos:
    """Every labelled photo, in the list's order."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        rows = [line.split("\t") for line in (self.folder / "photos.tsv").read_text("utf-8").splitlines()[1:]]
        self.paths = [row[1] for row in rows]
        self.sources = numpy.array([row[2] for row in rows])
        self.sites = numpy.array([row[3] for row in rows])
        self.bins = numpy.array([BINS.index(row[0].split(" (")[0]) for row in rows])
        self.folds = _folds(self.sources, self.sites, self.bins)

    def __len__(self):
        return len(self.paths)

    @property
    def held_out(self):
        return (self.sources == HELD_OUT_SOURCE) | (self.folds == 0)


def _folds(sources, sites, bins):
    """Whole sites to folds 0 ... SITE_FOLDS - 1, so that each gets its part of every bin; -1 for other sources."""
    counts = {}
    for site in sorted(set(sites[numpy.char.startswith(sources, "sites")])):
        counts[site] = numpy.bincount(bins[sites == site], minlength=len(BINS)).astype(float)
    ideal = sum(counts.values()) / SITE_FOLDS
    # A few large photos' worth of a rare bin matter more than of a common one.
    weight = 1.0 / numpy.maximum(ideal, 1.0)
    filled = numpy.zeros((SITE_FOLDS, len(BINS)))
    fold_of = {}
    for site in sorted(counts, key=lambda name: (-(counts[name] * weight).sum(), name)):
        over = numpy.maximum(filled + counts[site] - ideal, 0.0) ** 2 - numpy.maximum(filled - ideal, 0.0) ** 2
        gain = numpy.minimum(counts[site], numpy.maximum(ideal - filled, 0.0))
        fold = int(numpy.argmax((gain * weight).sum(axis=1) - (over * weight * weight).sum(axis=1)))
        filled[fold] += counts[site]
        fold_of[site] = fold
    return numpy.array([fold_of.get(site, -1) for site in sites])


class Views:
    """One row per view of a photo (or of an empty frame, photo -1).

    The number -1 - n is a closer look at the middle of the view n.
    """

    def __init__(self, photo, number):
        self.photo = photo
        self.number = number

    def closer(self, rows):
        """The rows of the closer looks at the views in rows."""
        row_of = {view: row for row, view in enumerate(zip(self.photo.tolist(), self.number.tolist()))}
        return numpy.array([row_of[photo, -1 - number] for photo, number in
                            zip(self.photo[rows].tolist(), self.number[rows].tolist())], dtype=int)


def list_views(photos):
    """The views to look at, the plain ones first; every empty frame among them. What is measured on is looked at more
    closely as well."""
    rows = []
    for index, source in enumerate(photos.sources):
        rows += [(number, index) for number in range(VIEWS.get(source, OTHER_VIEWS))]
    rows.sort()
    rows += [(number, -1) for number in range(EMPTY_FRAMES)]
    measured = numpy.isin(photos.sources, ["sites", HELD_OUT_SOURCE])
    rows += [(-1, int(index)) for index in numpy.nonzero(measured)[0]]
    rows += [(-1 - number, -1) for number in range(EMPTY_FRAMES) if is_kept_for_measuring(number)]
    return Views(numpy.array([row[1] for row in rows]), numpy.array([row[0] for row in rows]))


def is_kept_for_measuring(number):
    """Whether an empty frame isn't trained on."""
    return number >= 0 and number % 4 == 3


def look(photos, views, program, cache):
    """Features and object evidence of every view, from the cache or from the program that looks."""
    cache = pathlib.Path(cache)
    cache.mkdir(parents=True, exist_ok=True)
    lines = [f"{photos.folder / photos.paths[photo] if photo >= 0 else 'made:'}\t{number}"
             for photo, number in zip(views.photo, views.number)]
    text = "\n".join(lines) + "\n"
    name = hashlib.sha256(text.encode() + pathlib.Path(program).read_bytes()).hexdigest()[:16]
    target = cache / f"{name}.f32"
    if not target.exists():
        partial = target.with_suffix(".partial")
        subprocess.run([str(program), str(partial)], input=text.encode(), check=True)
        partial.rename(target)
    records = numpy.fromfile(target, dtype="<f4").reshape(len(lines), RECORD)
    if not numpy.isfinite(records).all():
        raise SystemExit("some photos can't be read")
    return records[:, :FEATURES], records[:, FEATURES:]
