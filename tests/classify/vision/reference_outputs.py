#!/usr/bin/python3
"""Runs the source graphs as they stand, in NumPy, to check the imported models against.

reference_outputs.py PACKAGE OUTPUT writes, for each model, one made picture (NAME.image.f32) and what the source
graph answers to it (NAME.OUTPUT.f32), all in the order (channels, height, width). It shares no code with the
translation but the reading of the files: its operators are written from the source's definitions.
"""

import sys
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).parents[3] / "classify" / "vision" / "models"))
from tfjs_graph import Graph, read_graph  # noqa: E402
from torch_weights import read_weights  # noqa: E402

_CASES = {
    # model: (source file, input node, height, width, lowest and highest value, outputs)
    "objects": (
        "centernet.json",
        "tower_0/images",
        160,
        224,
        (0, 255),
        {
            "heat": "tower_0/CenternetHead/centernet_cls_output/BiasAdd",
            "reach": "tower_0/mul",
            **{f"block{i}": f"tower_0/MobilenetV3/expanded_conv_{i}/depthwise/hard_swish/mul_1" for i in range(10, 15)},
            "probabilities": "tower_0/keypoints",
        },
    ),
    "pose": (
        "movenet-lightning.json",
        "StatefulPartitionedCall/stack",
        192,
        192,
        (0, 255),
        {
            "center": "StatefulPartitionedCall/center_0/conv2d_4/BiasAdd",
            "joints": "StatefulPartitionedCall/kpt_heatmap_0/conv2d_5/BiasAdd",
            "regress": "StatefulPartitionedCall/kpt_regress_0/conv2d_6/BiasAdd",
            "offset": "StatefulPartitionedCall/kpt_offset_0/conv2d_7/BiasAdd",
        },
    ),
    "face": (
        "blazeface.json",
        "input",
        160,
        288,
        (-1, 1),
        {
            "scores16": "StatefulPartitionedCall/functional_1/conv2d_33/BiasAdd",
            "boxes16": "StatefulPartitionedCall/functional_1/conv2d_35/BiasAdd",
            "scores32": "StatefulPartitionedCall/functional_1/conv2d_34/BiasAdd",
            "boxes32": "StatefulPartitionedCall/functional_1/conv2d_36/BiasAdd",
        },
    ),
}


def _picture(height: int, width: int, low: float, high: float) -> np.ndarray:
    """Soft blobs and edges with a little noise: every layer gets something to answer to."""
    random = np.random.default_rng(20260131)
    y, x = np.mgrid[0:height, 0:width]
    picture = np.zeros((height, width, 3))
    for _ in range(24):
        top, left = random.uniform(0, height), random.uniform(0, width)
        size = random.uniform(6, 60)
        inside = ((y - top) / size) ** 2 + ((x - left) / (size * random.uniform(0.4, 2.5))) ** 2 < 1
        picture[inside] = random.uniform(0, 1, 3)
    picture = np.clip(picture + random.normal(0, 0.03, picture.shape), 0, 1)
    return (low + (high - low) * picture).astype(np.float32)


def _same(length: int, kernel: int, stride: int) -> tuple[int, int]:
    total = max((-(-length // stride) - 1) * stride + kernel - length, 0)
    return total // 2, total - total // 2


def _restored(weight: np.ndarray) -> np.ndarray:
    """The sixth of the hard activations: the files hold it in half precision, the networks were trained with 1/6."""
    return np.full_like(weight, 1 / 6) if weight.size == 1 and abs(weight.item() - 1 / 6) < 1e-3 else weight


class _Interpreter:
    """Evaluates nodes in (height, width, channels) order, as double precision numbers."""

    def __init__(self, graph: Graph, fed: dict[str, np.ndarray]):
        self._graph = graph
        self._values = {name: value.astype(np.float64) for name, value in fed.items()}

    def value(self, name: str) -> np.ndarray:
        if name in self._graph.weights:
            return _restored(self._graph.weights[name].astype(np.float64))
        if name not in self._values:
            node = self._graph.nodes[name]
            self._values[name] = getattr(self, "_" + node.op.strip("_"))(node)
        return self._values[name]

    def _windows(self, picture: np.ndarray, node, kernel: tuple[int, int], fill: float = 0.0):
        stride = node.attributes["strides"][1]
        if node.attributes["padding"] == "SAME":
            rows, columns = (_same(picture.shape[axis], kernel[axis], stride) for axis in (0, 1))
            picture = np.pad(picture, (rows, columns, (0, 0)), constant_values=fill)
        for row in range(kernel[0]):
            for column in range(kernel[1]):
                last_row, last_column = picture.shape[0] - kernel[0] + row, picture.shape[1] - kernel[1] + column
                yield row, column, picture[row : last_row + 1 : stride, column : last_column + 1 : stride]

    def _finish(self, result: np.ndarray, node) -> np.ndarray:
        for operation in node.attributes.get("fused_ops", []):
            if operation == "BiasAdd":
                result = result + self.value(node.inputs[2])
            elif operation == "Relu":
                result = np.maximum(result, 0)
            elif operation == "Relu6":
                result = np.clip(result, 0, 6)
            else:
                raise ValueError(operation)
        return result

    def _FusedConv2D(self, node):
        kernel = self.value(node.inputs[1])
        windows = self._windows(self.value(node.inputs[0]), node, kernel.shape[:2])
        return self._finish(sum(part @ kernel[row, column] for row, column, part in windows), node)

    _Conv2D = _FusedConv2D

    def _FusedDepthwiseConv2dNative(self, node):
        kernel = self.value(node.inputs[1])[..., 0]
        windows = self._windows(self.value(node.inputs[0]), node, kernel.shape[:2])
        return self._finish(sum(part * kernel[row, column] for row, column, part in windows), node)

    _DepthwiseConv2dNative = _FusedDepthwiseConv2dNative

    def _MaxPool(self, node):
        size = node.attributes["ksize"][1]
        windows = self._windows(self.value(node.inputs[0]), node, (size, size), -np.inf)
        return np.max([part for _, _, part in windows], axis=0)

    def _Add(self, node):
        return self.value(node.inputs[0]) + self.value(node.inputs[1])

    _AddV2 = _Add

    def _Sub(self, node):
        return self._squeezed(node.inputs[0]) - self._squeezed(node.inputs[1])

    def _Mul(self, node):
        return self._squeezed(node.inputs[0]) * self._squeezed(node.inputs[1])

    def _squeezed(self, name: str) -> np.ndarray:
        value = self.value(name)
        return value[0] if value.ndim == 4 else value

    def _Relu(self, node):
        return np.maximum(self.value(node.inputs[0]), 0)

    def _Relu6(self, node):
        return np.clip(self.value(node.inputs[0]), 0, 6)

    def _Sigmoid(self, node):
        return 1 / (1 + np.exp(-self.value(node.inputs[0])))

    def _Mean(self, node):
        return self.value(node.inputs[0]).mean(axis=(0, 1), keepdims=True)

    def _Pad(self, node):
        return np.pad(self.value(node.inputs[0]), self.value(node.inputs[1]).astype(int)[1:])

    def _ConcatV2(self, node):
        return np.concatenate([self.value(each) for each in node.inputs[:-1]], axis=2)

    def _Identity(self, node):
        return self.value(node.inputs[0])

    def _ResizeBilinear(self, node):
        picture = self.value(node.inputs[0])
        for axis in (0, 1):
            length = picture.shape[axis]
            at = np.arange(2 * length)
            at = (at + 0.5) / 2 - 0.5 if node.attributes["half_pixel_centers"] else at / 2
            at = np.clip(at, 0, length - 1)
            low = np.floor(at).astype(int)
            high = np.minimum(low + 1, length - 1)
            share = (at - low).reshape((-1, 1, 1) if axis == 0 else (1, -1, 1))
            picture = picture.take(low, axis) * (1 - share) + picture.take(high, axis) * share
        return picture


class _SceneNetwork:
    """Evaluates the scene network with its batch normalisations, (height, width, channels), in double precision."""

    # Of each stage: how many blocks, and the stride of its first.
    _STAGES = ((1, 1), (3, 2), (3, 2), (4, 2), (4, 1), (5, 2), (1, 1))

    def __init__(self, weights: dict[str, np.ndarray]):
        self._weights = {name: value.astype(np.float64) for name, value in weights.items()}

    def pooled(self, picture: np.ndarray) -> np.ndarray:
        layer = self._clipped(self._normalised(self._convolved((picture - 127.0) / 128.0, "_conv_stem", 2), "_bn0"))
        widest = []
        for count, first_stride in self._STAGES:
            for i in range(count):
                prefix = f"_blocks.{len(widest)}."
                stride = first_stride if i == 0 else 1
                wide = layer
                if prefix + "_expand_conv.weight" in self._weights:
                    wide = self._clipped(self._normalised(self._convolved(wide, prefix + "_expand_conv"), prefix + "_bn0"))
                wide = self._normalised(self._convolved(wide, prefix + "_depthwise_conv", stride), prefix + "_bn1")
                widest.append(self._clipped(wide))
                narrow = self._normalised(self._convolved(widest[-1], prefix + "_project_conv"), prefix + "_bn2")
                layer = narrow + layer if stride == 1 and narrow.shape == layer.shape else narrow
        head = self._clipped(self._normalised(self._convolved(layer, "_conv_head"), "_bn1"))
        return np.concatenate([each.mean((0, 1)) for each in [*widest[16:21], head]])

    def _convolved(self, picture: np.ndarray, name: str, stride: int = 1) -> np.ndarray:
        kernel = self._weights[name + ".weight"]
        size = kernel.shape[2]
        picture = np.pad(picture, (*(_same(length, size, stride) for length in picture.shape[:2]), (0, 0)))
        rows, columns = picture.shape[0] - size, picture.shape[1] - size
        result = 0.0
        for row in range(size):
            for column in range(size):
                part = picture[row : row + rows + 1 : stride, column : column + columns + 1 : stride]
                one = kernel[:, :, row, column]
                result = result + (part * one[:, 0] if one.shape[1] == 1 else part @ one.T)
        return result

    def _normalised(self, picture: np.ndarray, name: str) -> np.ndarray:
        part = {each: self._weights[f"{name}.{each}"] for each in ("weight", "bias", "running_mean", "running_var")}
        return (picture - part["running_mean"]) / np.sqrt(part["running_var"] + 1e-3) * part["weight"] + part["bias"]

    @staticmethod
    def _clipped(picture: np.ndarray) -> np.ndarray:
        return np.clip(picture, 0.0, 6.0)


def main(arguments: list[str]) -> int:
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    package, output = Path(arguments[1]) / "models", Path(arguments[2])
    output.mkdir(parents=True, exist_ok=True)
    for model, (source, fed, height, width, bounds, outputs) in _CASES.items():
        picture = _picture(height, width, *bounds)
        interpreter = _Interpreter(read_graph(package / source), {fed: picture})
        written = {name: interpreter.value(node) for name, node in outputs.items()}
        if model == "objects":
            pooled = [written.pop(f"block{i}").mean((0, 1)) for i in range(10, 15)]
            written["pooled"] = np.concatenate([*pooled, written.pop("probabilities").max((0, 1))])
        for name, value in {"image": picture, **written}.items():
            planes = value.transpose(2, 0, 1) if value.ndim == 3 else value
            (output / f"{model}.{name}.f32").write_bytes(np.ascontiguousarray(planes, np.float32).tobytes())
    picture = _picture(160, 224, 0, 255)
    pooled = _SceneNetwork(read_weights(package / "scene.pth")).pooled(picture)
    for name, value in (("image", picture.transpose(2, 0, 1)), ("pooled", pooled)):
        (output / f"scene.{name}.f32").write_bytes(np.ascontiguousarray(value, np.float32).tobytes())
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
