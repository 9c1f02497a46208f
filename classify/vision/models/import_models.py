#!/usr/bin/python3
"""Turns the pinned packages' networks into ONNX files: import_models.py DETECTORS WEIGHTS OUTPUT

DETECTORS is the folder of the npm package, WEIGHTS the file of the scene network's weights.

Each file ends at the network's raw heads; reading them is the program's business. All take one picture,
(1, 3, height, width), RGB; what its numbers range over is said at each model.
"""

import sys
from pathlib import Path

import onnx

from onnx_export import OnnxExport
from scene_network import SceneNetwork
from tfjs_graph import read_graph
from torch_weights import read_weights

LAST_BLOCKS = range(10, 15)
SCENE_LAYERS = [*(f"block:{block}" for block in range(16, 21)), "head"]


def objects(folder: Path):
    """80 kinds of everyday objects and persons. The picture holds 0...255, its sides are multiples of 32.

    heat: one logit per class and cell of 4 by 4 pixels.
    reach: how far the object at a cell reaches to the left, up, right and down, in pixels.
    pooled: what the network saw, for whole pictures: the means over the picture of the widest layers of the last
    five blocks (384, 528, 528, 720, 720), then the highest probability of each class (80).
    """
    export = OnnxExport(read_graph(folder / "centernet.json"), "tower_0/images", "objects")
    heat = export.tensor("tower_0/CenternetHead/centernet_cls_output/BiasAdd")
    export.output("tower_0/CenternetHead/centernet_cls_output/BiasAdd", "heat", [1, 80, "rows", "columns"])
    export.output("tower_0/mul", "reach", [1, 4, "rows", "columns"])
    # Each block weighs its channels by these means, so that they cost nothing.
    pooled = [export.tensor(f"tower_0/MobilenetV3/expanded_conv_{block}/squeeze_excite/Mean") for block in LAST_BLOCKS]
    pooled.append(export.add("Sigmoid", [export.add("GlobalMaxPool", [heat], "heat:max")], "classes:max"))
    export.result("pooled", "Flatten", [export.add("Concat", pooled, "pooled:channels", axis=1)], [1, 2960])
    return export.model(32)


def pose(folder: Path):
    """The joints of the most central person. The picture holds 0...255, its sides are multiples of 32.

    Cells are 4 by 4 pixels. center: logit of a person's centre; joints: one logit per joint (17);
    regress: from a centre to its joints, (down, right) in cells; offset: from a joint's cell to the joint.
    """
    export = OnnxExport(read_graph(folder / "movenet-lightning.json"), "StatefulPartitionedCall/stack", "pose")
    prefix = "StatefulPartitionedCall/"
    for source, name, channels in (
        ("center_0/conv2d_4/BiasAdd", "center", 1),
        ("kpt_heatmap_0/conv2d_5/BiasAdd", "joints", 17),
        ("kpt_regress_0/conv2d_6/BiasAdd", "regress", 34),
        ("kpt_offset_0/conv2d_7/BiasAdd", "offset", 34),
    ):
        export.output(prefix + source, name, [1, channels, "rows", "columns"])
    return export.model(32)


def face(folder: Path):
    """Faces. The picture holds -1...1, its sides are multiples of 32.

    Two grids of anchors, at the centres of cells of 16 pixels (2 anchors a cell) and 32 pixels (6).
    scores: one logit an anchor; boxes: 16 values an anchor, the first four the box's centre from the
    anchor (right, down) and its width and height, in pixels.
    """
    export = OnnxExport(read_graph(folder / "blazeface.json"), "input", "face")
    for source, name, channels in (
        ("conv2d_33", "scores16", 2),
        ("conv2d_35", "boxes16", 32),
        ("conv2d_34", "scores32", 6),
        ("conv2d_36", "boxes32", 96),
    ):
        source = f"StatefulPartitionedCall/functional_1/{source}/BiasAdd"
        export.output(source, name, [1, channels, f"rows{name[-2:]}", f"columns{name[-2:]}"])
    return export.model(32)


def scene(weights: Path):
    """What a place looks like. The picture holds 0...255, its sides are multiples of 32.

    pooled: the means over the picture of the widest layers of blocks 16 to 20 (1248 each) and of the last layer (1280).
    """
    return SceneNetwork(read_weights(weights), eight_bits=True).model(SCENE_LAYERS)


def main(arguments: list[str]) -> int:
    if len(arguments) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    detectors, weights, output = Path(arguments[1]) / "models", Path(arguments[2]), Path(arguments[3])
    output.mkdir(parents=True, exist_ok=True)
    for build in (objects, pose, face):
        onnx.save(build(detectors), output / f"{build.__name__}.onnx")
    onnx.save(scene(weights), output / "scene.onnx")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
