"""The labelled photos and clips, and how they are split."""

import hashlib
import pathlib

import numpy

# One scene identifier of the taxonomy for each bin; the last output of the head is "shows no place".
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
OUTPUTS = NOTHING + 1
EXCLUSIVE = {BINS.index("Aerial / Drone"), BINS.index("Agent / Talent")}
COMMON = [BINS.index(name) for name in ("Kitchen", "Bathroom", "Bedroom", "Living Room", "Dining Room",
                                        "Exterior Front", "Exterior Back")]
NONE = -1
FRAMES = 4  # of a clip
FOLDS = 5
# So many ways of sorting the sites into folds: with one, what three sites have in common decides.
SPLITS = 4
EMPTY_FRAMES = 96

# Of the large collections every so many photos: they are far from what the program is shown.
EVERY = {"rooms-a": 16, "rooms-b": 12, "street": 7, "laundromat": 5, "garden": 16, "satellite": 6}
# Never trained on: the figures for listings are of them.
HELD_OUT_SOURCE = "rooms-b-valid"
EVERY_HELD_OUT = 4


class Pictures:
    """Photos, the frames of clips and frames that show nothing, one row each; a clip's frames follow one another."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        columns = []
        seen = {}
        for label, path, source, site, alternative in self._rows("photos.tsv", 5):
            seen[source] = seen.get(source, -1) + 1
            if seen[source] % EVERY.get(source, EVERY_HELD_OUT if source == HELD_OUT_SOURCE else 1) == 0:
                # Only sites have sites; elsewhere there is the name of a file.
                columns.append((path, source, site if source.startswith("sites") else "", label, alternative))
        for name, label, alternative, kind, _, site in self._rows("clips.tsv", 6):
            source = "clips-" + kind.split()[0]
            columns += [(f"clips/{name}_{i + 1}.jpg", source, site, label, alternative) for i in range(FRAMES)]
        columns += [(f"made:{i}", "made", f"made:{i}", "Unsorted", "") for i in range(EMPTY_FRAMES)]
        # The sites first, as their features take longest.
        self.paths = [column[0] for column in columns]
        self.sources, self.sites = (numpy.array([column[i] for column in columns]) for i in (1, 2))
        self.bins, self.alternatives = (numpy.array([_bin(column[i]) for column in columns]) for i in (3, 4))
        self.is_site = numpy.char.startswith(self.sources, "sites")
        self.is_clip = numpy.char.startswith(self.sources, "clips-")
        # For each split. By the name of the site alone, so that photos and clips of one site share a fold; none for the
        # collections.
        self.folds = [numpy.array([int(hashlib.md5(f"{split}{site}".encode()).hexdigest(), 16) % FOLDS if site else NONE
                                   for site in self.sites]) for split in range(SPLITS)]

    def half(self):
        """The pictures of half of the sites, by a hash of their names."""
        return numpy.array([bool(site) and source != "made" and int(hashlib.md5(f"half{site}".encode()).hexdigest(), 16) % 2 == 0
                            for site, source in zip(self.sites, self.sources)])

    def __len__(self):
        return len(self.paths)

    def _rows(self, name, count):
        lines = (self.folder / name).read_text("utf-8").splitlines()[1:]
        return [tuple((line.split("\t") + [""] * count)[:count]) for line in lines]


def _bin(label):
    """The number of a label's bin; "Agent / Talent (portrait)" is of that bin too."""
    name = label.split(" (")[0]
    return NOTHING if name == "Unsorted" else BINS.index(name) if name in SCENES else NONE
