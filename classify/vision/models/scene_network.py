"""Turns the weights of an EfficientNet-Lite into ONNX: a network trained to classify photographs of everything.

Its last layers tell a place better than those of a network that looks for objects. The batch normalisations are folded
into the convolutions, and the picture's values are scaled in the graph, so that it takes 0...255 as the detectors do.

In eight bits the convolutions take half the time. No photos are needed to find the range of a layer: a batch
normalisation says what mean and spread each of its channels has.
"""

import numpy as np
from onnx import TensorProto, checker, helper, numpy_helper

_OPSET = 14
_IR_VERSION = 8
_EPSILON = 1e-3  # the batch normalisations'
_STAGE_STRIDES = (1, 2, 2, 2, 1, 2, 1)
_MEAN, _SPREAD = 127.0, 128.0  # of the pictures that it was trained on
_TOP = 6.0  # of a clipped layer
# So many spreads from its mean lies nearly all that a channel yields.
_REACH = 6.0


class SceneNetwork:
    """Height and width stay open. They must be multiples of 32, for which the padding is the same at every size."""

    def __init__(self, weights: dict[str, np.ndarray], eight_bits: bool):
        self._weights = weights
        self._eight_bits = eight_bits
        self._nodes = []
        self._constants = {}
        self._spread = {}  # of each layer that isn't clipped: the mean and the variance of its channels
        self._scale = {}  # of each layer in eight bits
        self.channels = {}  # of each layer that can be asked for
        self._add("Sub", ["image", self._constant("mean", np.float32(_MEAN))], "centred")
        self._add("Mul", ["centred", self._constant("factor", np.float32(1 / _SPREAD))], "scaled")
        self._build(self._rounded("scaled", -_MEAN / _SPREAD, (255 - _MEAN) / _SPREAD))

    def model(self, layers: list[str]):
        """The network with one output, pooled: the means over the picture of the layers named, one after the other.

        "block:N" is what block N's widest layer yields, "head" the last layer's.
        """
        nodes = list(self._nodes)
        means = []
        for layer in layers:
            means.append(f"{layer}:mean")
            nodes.append(helper.make_node("GlobalAveragePool", [self.channels[layer][1]], [means[-1]], name=means[-1]))
        nodes.append(helper.make_node("Concat", means, ["channels"], name="channels", axis=1))
        nodes.append(helper.make_node("Flatten", ["channels"], ["pooled"], name="pooled"))
        count = sum(self.channels[layer][0] for layer in layers)
        nodes = _needed(nodes, "pooled")
        used = {name for node in nodes for name in node.input}
        constants = [value for name, value in self._constants.items() if name in used]
        image = helper.make_tensor_value_info("image", TensorProto.FLOAT, [1, 3, "height", "width"])
        pooled = helper.make_tensor_value_info("pooled", TensorProto.FLOAT, [1, count])
        graph = helper.make_graph(nodes, "scene", [image], [pooled], constants)
        model = helper.make_model(
            graph, opset_imports=[helper.make_opsetid("", _OPSET)], producer_name="larkspan-import-models"
        )
        model.ir_version = _IR_VERSION
        helper.set_model_props(model, {"sizeMultiple": "32"})
        checker.check_model(model, full_check=True)
        return model

    def _build(self, layer: str) -> None:
        layer = self._convolution(layer, "_conv_stem", "_bn0", "stem", stride=2, clip=True)
        width = self._weights["_conv_stem.weight"].shape[0]
        stage, stage_width = -1, 0
        block = 0
        while f"_blocks.{block}._project_conv.weight" in self._weights:
            source, source_width = layer, width
            prefix = f"_blocks.{block}."
            width = self._weights[prefix + "_project_conv.weight"].shape[0]
            # The stages differ in width, and the first block of each changes the size.
            stride = 1
            if width != stage_width:
                stage, stage_width = stage + 1, width
                stride = _STAGE_STRIDES[stage]
            name = f"block:{block}"
            if prefix + "_expand_conv.weight" in self._weights:
                layer = self._convolution(layer, prefix + "_expand_conv", prefix + "_bn0", name + ":wide", clip=True)
            layer = self._convolution(layer, prefix + "_depthwise_conv", prefix + "_bn1", name, stride=stride, clip=True)
            self.channels[name] = (self._weights[prefix + "_depthwise_conv.weight"].shape[0], layer)
            layer = self._convolution(layer, prefix + "_project_conv", prefix + "_bn2", name + ":narrow")
            if stride == 1 and width == source_width:
                layer = self._sum(layer, source, name + ":sum")
            block += 1
        layer = self._convolution(layer, "_conv_head", "_bn1", "head", clip=True)
        self.channels["head"] = (self._weights["_conv_head.weight"].shape[0], layer)

    def _convolution(self, source: str, kernel: str, norm: str, name: str, stride: int = 1, clip: bool = False) -> str:
        weights, bias = folded(self._weights, kernel, norm)
        mean, spread = self._weights[f"{norm}.bias"], np.abs(self._weights[f"{norm}.weight"])
        size = weights.shape[2]
        before, after = same_padding(size, stride)
        self._add(
            "Conv",
            [source, *self._parameters(name, weights, bias, source)],
            name + ":linear",
            kernel_shape=[size, size],
            strides=[stride, stride],
            pads=[before, before, after, after],
            group=weights.shape[0] if weights.shape[1] == 1 else 1,
        )
        highest = float((mean + _REACH * spread).max())
        if clip and self._eight_bits:
            # Rounding to eight bits clips as well.
            return self._rounded(name + ":linear", 0.0, min(_TOP, highest))
        if clip:
            low, high = self._constant("zero", np.float32(0.0)), self._constant("six", np.float32(_TOP))
            return self._add("Clip", [name + ":linear", low, high], name)
        layer = self._rounded(name + ":linear", float((mean - _REACH * spread).min()), highest)
        self._spread[layer] = mean.astype(np.float64), spread.astype(np.float64) ** 2
        return layer

    def _sum(self, a: str, b: str, name: str) -> str:
        mean, variance = (self._spread[a][i] + self._spread[b][i] for i in (0, 1))
        reach = _REACH * np.sqrt(variance)
        layer = self._rounded(self._add("Add", [a, b], name), float((mean - reach).min()), float((mean + reach).max()))
        self._spread[layer] = mean, variance
        return layer

    def _parameters(self, name: str, weights: np.ndarray, bias: np.ndarray, source: str) -> list[str]:
        """Kernel and bias; in eight bits each channel of the kernel has a scale of its own."""
        if not self._eight_bits:
            return [self._constant(name + ":kernel", weights), self._constant(name + ":bias", bias)]
        scale = np.maximum(np.abs(weights).max(axis=(1, 2, 3)) / 127, 1e-8).astype(np.float32)
        rounded = np.rint(weights / scale[:, None, None, None].astype(np.float64)).clip(-127, 127).astype(np.int8)
        bias_scale = scale * np.float32(self._scale[source])
        rounded_bias = np.rint(bias / bias_scale.astype(np.float64)).clip(-(2**31), 2**31 - 1).astype(np.int32)
        result = []
        for part, values, step in (("kernel", rounded, scale), ("bias", rounded_bias, bias_scale)):
            inputs = [
                self._typed(f"{name}:{part}:values", values),
                self._typed(f"{name}:{part}:scale", step),
                self._typed(f"{name}:{part}:zero", np.zeros(len(step), values.dtype)),
            ]
            result.append(self._add("DequantizeLinear", inputs, f"{name}:{part}", axis=0))
        return result

    def _rounded(self, source: str, low: float, high: float) -> str:
        """The layer in steps of a 255th of its range, if this is a network in eight bits."""
        if not self._eight_bits:
            return source
        scale = (high - low) / 255
        parameters = [
            self._typed(source + ":scale", np.float32(scale)),
            self._typed(source + ":zero", np.uint8(np.clip(np.rint(-low / scale), 0, 255))),
        ]
        self._add("QuantizeLinear", [source, *parameters], source + ":bytes")
        layer = self._add("DequantizeLinear", [source + ":bytes", *parameters], source + ":rounded")
        self._scale[layer] = scale
        return layer

    def _constant(self, name: str, value: np.ndarray) -> str:
        return self._typed(name, np.asarray(value, np.float32))

    def _typed(self, name: str, value: np.ndarray) -> str:
        self._constants[name] = numpy_helper.from_array(np.ascontiguousarray(value).reshape(np.shape(value)), name)
        return name

    def _add(self, op: str, inputs: list[str], name: str, **attributes) -> str:
        self._nodes.append(helper.make_node(op, inputs, [name], name=name, **attributes))
        return name


def same_padding(kernel: int, stride: int) -> tuple[int, int]:
    """Padding before and after of one axis whose length is a multiple of the stride."""
    total = max(kernel - stride, 0)
    return total // 2, total - total // 2


def folded(weights: dict[str, np.ndarray], kernel: str, norm: str) -> tuple[np.ndarray, np.ndarray]:
    """Weights and bias of a convolution and the batch normalisation after it, in one, in double precision."""
    part = {each: weights[f"{norm}.{each}"].astype(np.float64) for each in ("weight", "bias", "running_mean")}
    slope = part["weight"] / np.sqrt(weights[f"{norm}.running_var"].astype(np.float64) + _EPSILON)
    return weights[f"{kernel}.weight"] * slope[:, None, None, None], part["bias"] - part["running_mean"] * slope


def _needed(nodes: list, output: str) -> list:
    """The nodes that the output depends on, in their order."""
    wanted, kept = {output}, []
    for node in reversed(nodes):
        if wanted & set(node.output):
            kept.append(node)
            wanted |= set(node.input)
    return kept[::-1]
