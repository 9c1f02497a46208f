"""Reads a TensorFlow.js graph model: its nodes in a usable form and its weights as float32 arrays."""

import base64
import json
from dataclasses import dataclass
from pathlib import Path

import numpy as np


@dataclass(frozen=True)
class Node:
    op: str
    name: str
    inputs: tuple[str, ...]
    attributes: dict


@dataclass(frozen=True)
class Graph:
    nodes: dict[str, Node]  # in file order, without the constants
    weights: dict[str, np.ndarray]


def _attribute(value: dict):
    if "s" in value:
        return base64.b64decode(value["s"]).decode()
    if "list" in value:
        items = value["list"]
        if "s" in items:
            return [base64.b64decode(item).decode() for item in items["s"]]
        return [int(item) for item in items.get("i", [])]
    for kind, convert in (("i", int), ("f", float), ("b", bool)):
        if kind in value:
            return convert(value[kind])
    return value


def _read_weights(manifest: list, folder: Path) -> dict[str, np.ndarray]:
    weights = {}
    for group in manifest:
        data = b"".join((folder / path).read_bytes() for path in group["paths"])
        offset = 0
        for entry in group["weights"]:
            quantization = entry.get("quantization")
            stored = quantization["dtype"] if quantization else entry["dtype"]
            if stored not in ("float16", "float32", "int32"):
                raise ValueError(f"{entry['name']}: weights stored as {stored} are not understood")
            count = int(np.prod(entry["shape"], dtype=np.int64))
            array = np.frombuffer(data, dtype=stored, count=count, offset=offset)
            offset += array.nbytes
            kept = np.float32 if entry["dtype"] == "float32" else np.int32
            weights[entry["name"]] = array.astype(kept).reshape(entry["shape"])
        if offset != len(data):
            raise ValueError(f"{group['paths']}: {len(data)} bytes, but the weights need {offset}")
    return weights


def read_graph(path: Path) -> Graph:
    model = json.loads(path.read_text())
    nodes = {}
    for entry in model["modelTopology"]["node"]:
        if entry["op"] == "Const":
            continue
        attributes = {key: _attribute(value) for key, value in entry.get("attr", {}).items()}
        nodes[entry["name"]] = Node(entry["op"], entry["name"], tuple(entry.get("input", ())), attributes)
    return Graph(nodes, _read_weights(model["weightsManifest"], path.parent))
