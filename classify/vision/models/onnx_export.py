"""Turns part of a TensorFlow.js graph into an ONNX graph.

The source counts its axes as (batch, height, width, channels), the target as (batch, channels, height,
width), which the engine runs without a single transposition: every activation of these networks is either
such a picture or one value a channel, so the axes are changed once, here, in weights and attributes.
Height and width stay open. They must be multiples of the network's stride, so that the source's "SAME"
padding is the same for every size and can be written down as numbers.
"""

import numpy as np
from onnx import TensorProto, checker, helper, numpy_helper

from tfjs_graph import Graph, Node

_OPSET = 14
_IR_VERSION = 8


def _same_padding(kernel: int, stride: int) -> tuple[int, int]:
    """Padding before and after of one axis whose length is a multiple of the stride."""
    total = max(kernel - stride, 0)
    return total // 2, total - total // 2


class OnnxExport:
    """Builds one ONNX graph; each source node that an output needs is translated once, on first demand."""

    def __init__(self, graph: Graph, input_name: str, name: str):
        self._graph = graph
        self._name = name
        self._translated = {input_name: "image"}
        self._nodes = []
        self._constants = {}
        self._outputs = []

    def output(self, source: str, name: str, shape: list) -> None:
        """Makes the source node's result an output of the ONNX graph."""
        self.result(name, "Identity", [self.tensor(source)], shape)

    def result(self, name: str, op: str, inputs: list[str], shape: list, **attributes) -> None:
        """Adds an operator of our own whose result is an output."""
        self._nodes.append(helper.make_node(op, inputs, [name], name=name, **attributes))
        self._outputs.append(helper.make_tensor_value_info(name, TensorProto.FLOAT, shape))

    def add(self, op: str, inputs: list[str], name: str, **attributes) -> str:
        self._nodes.append(helper.make_node(op, inputs, [name], name=name, **attributes))
        return name

    def tensor(self, source: str) -> str:
        """The ONNX name of what a source node yields."""
        pending = [source]
        while pending:
            missing = []
            if pending[-1] not in self._translated:
                node = self._graph.nodes[pending[-1]]
                missing = [each for each in self._activations(node) if each not in self._translated]
                if not missing:
                    self._translated[node.name] = self._translate(node)
            if missing:
                pending.extend(missing)
            else:
                pending.pop()
        return self._translated[source]

    def model(self, width_height_multiple: int):
        image = helper.make_tensor_value_info("image", TensorProto.FLOAT, [1, 3, "height", "width"])
        graph = helper.make_graph(self._nodes, self._name, [image], self._outputs, list(self._constants.values()))
        model = helper.make_model(
            graph, opset_imports=[helper.make_opsetid("", _OPSET)], producer_name="larkspan-import-models"
        )
        model.ir_version = _IR_VERSION
        helper.set_model_props(model, {"sizeMultiple": str(width_height_multiple)})
        checker.check_model(model, full_check=True)
        return model

    # The source's operators.

    def _activations(self, node: Node) -> list[str]:
        swish = self._hard_swish_input(node) or self._hard_sigmoid_input(node)
        return [swish] if swish else [each for each in node.inputs if each not in self._graph.weights]

    def _translate(self, node: Node) -> str:
        source = self._hard_swish_input(node)
        if source:
            return self.add("HardSwish", [self._translated[source]], node.name)
        source = self._hard_sigmoid_input(node)
        if source:
            return self.add("HardSigmoid", [self._translated[source]], node.name, alpha=1.0 / 6.0, beta=0.5)
        translate = getattr(self, "_op_" + node.op.strip("_"), None)
        if translate is None:
            raise ValueError(f"{node.name}: no translation of {node.op}")
        return translate(node)

    def _constant(self, name: str, value: np.ndarray) -> str:
        if name not in self._constants:
            self._constants[name] = numpy_helper.from_array(np.ascontiguousarray(value), name)
        return name

    def _operand(self, name: str) -> str:
        """An input of an element-wise operator: an activation, a scalar, or one value a channel."""
        value = self._graph.weights.get(name)
        if value is None:
            return self._translated[name]
        if value.size == 1:
            return self._constant(name, value.reshape(()))
        if value.size != value.shape[-1]:
            raise ValueError(f"{name}: a constant of shape {value.shape} is neither a scalar nor per channel")
        return self._constant(name, value.reshape(-1, 1, 1))

    def _scalar(self, name: str, expected: float) -> bool:
        value = self._graph.weights.get(name)
        return value is not None and value.size == 1 and abs(float(value.reshape(())) - expected) < 1e-3

    def _shifted_relu6_input(self, name: str) -> str | None:
        """x, when the named node is relu6(x + 3)."""
        relu = self._graph.nodes.get(name)
        shift = self._graph.nodes.get(relu.inputs[0]) if relu and relu.op == "Relu6" else None
        if shift is None or shift.op not in ("Add", "AddV2") or not self._scalar(shift.inputs[1], 3.0):
            return None
        return shift.inputs[0]

    def _hard_sigmoid_input(self, node: Node) -> str | None:
        """x, when the node is relu6(x + 3) / 6."""
        if node.op != "Mul" or not self._scalar(node.inputs[0], 1.0 / 6.0):
            return None
        return self._shifted_relu6_input(node.inputs[1])

    def _hard_swish_input(self, node: Node) -> str | None:
        """x, when the node is (x / 6) * relu6(x + 3)."""
        if node.op != "Mul":
            return None
        scaled = self._graph.nodes.get(node.inputs[0])
        if scaled is None or scaled.op != "Mul" or not self._scalar(scaled.inputs[0], 1.0 / 6.0):
            return None
        source = self._shifted_relu6_input(node.inputs[1])
        return source if source == scaled.inputs[1] else None

    def _convolution(self, node: Node, kernel: np.ndarray, group: int) -> str:
        height, width = kernel.shape[2:]
        stride = node.attributes["strides"][1]
        pads = [0, 0, 0, 0]
        if node.attributes["padding"] == "SAME":
            top, bottom = _same_padding(height, stride)
            left, right = _same_padding(width, stride)
            pads = [top, left, bottom, right]
        if any(each != 1 for each in node.attributes.get("dilations", [])):
            raise ValueError(f"{node.name}: dilated convolutions are not translated")
        inputs = [self._translated[node.inputs[0]], self._constant(node.name + ":kernel", kernel)]
        activations = list(node.attributes.get("fused_ops", []))
        if "BiasAdd" in activations:
            activations.remove("BiasAdd")
            inputs.append(self._constant(node.inputs[2], self._graph.weights[node.inputs[2]]))
        result = node.name if not activations else node.name + ":linear"
        self.add("Conv", inputs, result, kernel_shape=[height, width], strides=[stride, stride], pads=pads, group=group)
        for activation in activations:
            result = self._activation(activation, result, node.name)
        return result

    def _activation(self, kind: str, source: str, name: str) -> str:
        if kind == "Relu6":
            low = self._constant("zero", np.float32(0.0))
            high = self._constant("six", np.float32(6.0))
            return self.add("Clip", [source, low, high], name)
        if kind not in ("Relu", "Sigmoid"):
            raise ValueError(f"{name}: no translation of the activation {kind}")
        return self.add(kind, [source], name)

    def _op_Conv2D(self, node: Node) -> str:
        kernel = self._graph.weights[node.inputs[1]]
        return self._convolution(node, kernel.transpose(3, 2, 0, 1), 1)

    _op_FusedConv2D = _op_Conv2D

    def _op_DepthwiseConv2dNative(self, node: Node) -> str:
        kernel = self._graph.weights[node.inputs[1]]
        if kernel.shape[3] != 1:
            raise ValueError(f"{node.name}: a depth multiplier of {kernel.shape[3]} is not translated")
        return self._convolution(node, kernel.transpose(2, 3, 0, 1), kernel.shape[2])

    _op_FusedDepthwiseConv2dNative = _op_DepthwiseConv2dNative

    def _binary(self, op: str, node: Node) -> str:
        return self.add(op, [self._operand(each) for each in node.inputs], node.name)

    def _op_Add(self, node: Node) -> str:
        return self._binary("Add", node)

    _op_AddV2 = _op_Add

    def _op_Sub(self, node: Node) -> str:
        return self._binary("Sub", node)

    def _op_Mul(self, node: Node) -> str:
        return self._binary("Mul", node)

    def _op_Relu(self, node: Node) -> str:
        return self._activation(node.op, self._translated[node.inputs[0]], node.name)

    _op_Relu6 = _op_Relu
    _op_Sigmoid = _op_Relu

    def _op_Mean(self, node: Node) -> str:
        axes = self._graph.weights[node.inputs[1]].reshape(-1).tolist()
        if sorted(axes) != [1, 2] or not node.attributes["keep_dims"]:
            raise ValueError(f"{node.name}: only the mean over the whole picture is translated")
        return self.add("GlobalAveragePool", [self._translated[node.inputs[0]]], node.name)

    def _op_MaxPool(self, node: Node) -> str:
        size, stride = node.attributes["ksize"][1], node.attributes["strides"][1]
        before, after = _same_padding(size, stride)
        return self.add(
            "MaxPool",
            [self._translated[node.inputs[0]]],
            node.name,
            kernel_shape=[size, size],
            strides=[stride, stride],
            pads=[before, before, after, after],
        )

    def _op_Pad(self, node: Node) -> str:
        (_, _, _, channels) = pads = self._graph.weights[node.inputs[1]].tolist()
        if any(any(axis) for axis in pads[:3]):
            raise ValueError(f"{node.name}: only channels are padded")
        amounts = np.array([0, channels[0], 0, 0, 0, channels[1], 0, 0], np.int64)
        return self.add(
            "Pad", [self._translated[node.inputs[0]], self._constant(node.name + ":pads", amounts)], node.name
        )

    def _op_ConcatV2(self, node: Node) -> str:
        *parts, axis = node.inputs
        if int(self._graph.weights[axis].reshape(())) not in (3, -1):
            raise ValueError(f"{node.name}: only channels are concatenated")
        return self.add("Concat", [self._translated[each] for each in parts], node.name, axis=1)

    def _op_ResizeBilinear(self, node: Node) -> str:
        # Both networks use it to double their maps; the stored target size belongs to one input size.
        scales = self._constant("doubled", np.array([1, 1, 2, 2], np.float32))
        mode = "half_pixel" if node.attributes["half_pixel_centers"] else "asymmetric"
        if node.attributes["align_corners"]:
            raise ValueError(f"{node.name}: aligned corners are not translated")
        return self.add(
            "Resize",
            [self._translated[node.inputs[0]], "", scales],
            node.name,
            mode="linear",
            coordinate_transformation_mode=mode,
        )

    def _op_Identity(self, node: Node) -> str:
        return self._translated[node.inputs[0]]
