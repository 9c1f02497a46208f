"""The networks' features of pictures, through the ONNX files that ship. Needs onnxruntime and Pillow.

The pictures are scaled as the program scales them, as far as another library's filter allows; classify_clips files the
clips as these features say to within one in a hundred.
"""

import hashlib
import pathlib

import numpy
import onnxruntime
from PIL import Image, ImageDraw

# Network, the long side that it looks at, how many features it yields.
NETWORKS = {"objects": (448, 2960), "scene": (352, 7520)}
FEATURES = sum(count for _, count in NETWORKS.values())
_STEP = 32
_CHUNK = 20


class Looks:
    """Features by picture, kept in a folder, so that a run that was cut short goes on."""

    def __init__(self, models, cache):
        self.cache = pathlib.Path(cache)
        self.cache.mkdir(parents=True, exist_ok=True)
        self.sessions = {}
        self.networks = {name: (pathlib.Path(models) / f"{name}.onnx").read_bytes() for name in NETWORKS}

    def features(self, folder, paths):
        """One row for each path, the object detector's features before the scene network's."""
        rows = []
        for first in range(0, len(paths), _CHUNK):
            chunk = paths[first:first + _CHUNK]
            targets = {name: self._target(name, chunk) for name in NETWORKS}
            if not all(target.exists() for target in targets.values()):
                self._look(pathlib.Path(folder), chunk, targets)
                print(f"{first + len(chunk)} of {len(paths)}", flush=True)
            rows.append(numpy.concatenate([numpy.load(target) for target in targets.values()], axis=1))
        return numpy.concatenate(rows).astype(numpy.float32)

    def _target(self, name, chunk):
        key = hashlib.sha256("\n".join(chunk).encode() + self.networks[name]).hexdigest()[:20]
        return self.cache / f"{name}-{key}.npy"

    def _look(self, folder, chunk, targets):
        pictures = [_open(folder, path) for path in chunk]
        for name, target in targets.items():
            if name not in self.sessions:
                self.sessions[name] = _session(self.networks[name])
            run, side = self.sessions[name].run, NETWORKS[name][0]
            values = [run(["pooled"], {"image": _planes(picture, side)})[0][0] for picture in pictures]
            partial = target.with_suffix(".partial")
            with open(partial, "wb") as stream:
                numpy.save(stream, numpy.stack(values).astype(numpy.float16))
            partial.rename(target)


def _session(model):
    options = onnxruntime.SessionOptions()
    options.intra_op_num_threads = 1
    return onnxruntime.InferenceSession(model, options, providers=["CPUExecutionProvider"])


def _open(folder, path):
    return empty_frame(int(path[5:])) if path.startswith("made:") else Image.open(folder / path).convert("RGB")


def _planes(image, side):
    longest = max(image.size)
    size = [max(1, round(length * side / longest / _STEP)) * _STEP for length in image.size]
    pixels = numpy.asarray(image.resize(size, Image.BILINEAR, reducing_gap=2.0), numpy.float32)
    return pixels.transpose(2, 0, 1)[None]


def empty_frame(number):
    """A frame that shows nothing: even, graded, noise, a sensor's noise, stripes, or a cap's darkness, by the number."""
    chance = numpy.random.default_rng(number)
    width, height = [(448, 252), (252, 448), (448, 448), (448, 336)][chance.integers(4)]
    color, other = chance.integers(0, 256, 3), chance.integers(0, 256, 3)
    picture = numpy.tile(color.astype(float), (height, width, 1))
    kind = number % 6
    if kind == 0 and chance.random() < 0.5:
        picture[:] = 255 * chance.integers(2)
    elif kind == 1:
        share = numpy.linspace(0, 1, height)[:, None, None]
        picture = picture * (1 - share) + other * share
    elif kind == 2:
        picture = chance.integers(0, 256, (height, width, 1 if chance.random() < 0.3 else 3)) * numpy.ones(3)
    elif kind == 3:
        picture += chance.normal(0, chance.uniform(2, 40), picture.shape)
    elif kind == 4:
        image = Image.fromarray(picture.astype(numpy.uint8))
        step = int(chance.integers(4, 64))
        for left in range(0, width, step):
            ImageDraw.Draw(image).rectangle((left, 0, left + step // 2, height), tuple(chance.integers(0, 256, 3).tolist()))
        picture = numpy.asarray(image.rotate(float(chance.integers(4) * 30)), float)
    elif kind == 5:
        y, x = numpy.mgrid[0:height, 0:width]
        gleam = numpy.exp(-((x - chance.uniform(0, width)) ** 2 + (y - chance.uniform(0, height)) ** 2) / 2 /
                          chance.uniform(20, 200) ** 2)
        picture = color * 0.08 + other * 0.2 * gleam[:, :, None] + chance.normal(0, 4, (height, width, 1))
    return Image.fromarray(picture.clip(0, 255).astype(numpy.uint8))
