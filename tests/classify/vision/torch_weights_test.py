#!/usr/bin/python3
"""The reader of the scene network's weights: what it reads, and what it refuses."""

import pickle
import struct
import sys
import tempfile
import unittest
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).parents[3] / "classify" / "vision" / "models"))
from torch_weights import read_weights  # noqa: E402

_MAGIC = 0x1950A86A20F9469CFC6C


def _global(module: str, name: str) -> bytes:
    return b"c" + f"{module}\n{name}\n".encode()


def _text(value: str) -> bytes:
    return b"X" + struct.pack("<I", len(value)) + value.encode()


def _number(value: int) -> bytes:
    return b"J" + struct.pack("<i", value)


def _tensors(rebuild: bytes, shape: tuple[int, int], count: int = 6) -> bytes:
    """The pickle of {"w": tensor}, the tensor of rows by columns and lying in the storage "s" of so many floats."""
    storage = b"(" + _text("storage") + _global("torch", "FloatStorage") + _text("s") + _text("cpu") + _number(count)
    storage += b"NtQ"
    sizes = b"(" + b"".join(map(_number, shape)) + b"t(" + _number(shape[1]) + _number(1) + b"t"
    tensor = rebuild + b"(" + storage + _number(0) + sizes + b"\x89" + _global("collections", "OrderedDict") + b")R" + b"tR"
    return b"\x80\x02}(" + _text("w") + tensor + b"u."


def _file(tensors: bytes, values: bytes, count: int = 6, magic: int = _MAGIC, more: bytes = b"") -> bytes:
    facts = {"little_endian": True}
    head = b"".join(pickle.dumps(each, 2) for each in (magic, 1001, facts))
    return head + tensors + pickle.dumps(["s"], 2) + struct.pack("<q", count) + values + more


_REBUILD = _global("torch._utils", "_rebuild_tensor_v2")
_VALUES = np.arange(6, dtype="<f4")


class TorchWeights(unittest.TestCase):
    def read(self, content: bytes) -> dict:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "weights.pth"
            path.write_bytes(content)
            return read_weights(path)

    def test_reads_a_tensor_in_its_shape(self):
        weights = self.read(_file(_tensors(_REBUILD, (2, 3)), _VALUES.tobytes()))
        self.assertEqual(list(weights), ["w"])
        np.testing.assert_array_equal(weights["w"], _VALUES.reshape(2, 3))

    def test_refuses_anything_but_tensors(self):
        for call in (_global("os", "system"), _global("builtins", "eval"), _global("torch", "load")):
            with self.assertRaises(pickle.UnpicklingError):
                self.read(_file(_tensors(call, (2, 3)), _VALUES.tobytes()))

    def test_refuses_a_tensor_larger_than_its_storage(self):
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (2, 4)), _VALUES.tobytes()))
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (-1, 3)), _VALUES.tobytes()))

    def test_refuses_a_file_cut_off_or_with_bytes_left_over(self):
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (2, 3)), _VALUES.tobytes()[:-1]))
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (2, 3)), _VALUES.tobytes(), count=5))
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (2, 3)), _VALUES.tobytes(), more=b"x"))

    def test_refuses_a_file_of_another_kind(self):
        with self.assertRaises(ValueError):
            self.read(_file(_tensors(_REBUILD, (2, 3)), _VALUES.tobytes(), magic=1))
        with self.assertRaises((ValueError, pickle.UnpicklingError, EOFError)):
            self.read(b"<html>404 Not Found</html>")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
