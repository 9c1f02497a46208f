"""Reads the weights of a PyTorch checkpoint without PyTorch, in the form that it wrote before version 1.6.

Such a file is five pickles (a magic number, a version, facts of the machine, the dictionary of tensors and the list of
storages), then the bytes of each storage. The dictionary is read by an unpickler that knows nothing but dictionaries
and tensors, so that a file can't run code.
"""

import collections
import pickle
import struct
from pathlib import Path

import numpy as np

_MAGIC = 0x1950A86A20F9469CFC6C
_VERSION = 1001
_DTYPES = {"FloatStorage": np.dtype("<f4"), "HalfStorage": np.dtype("<f2"), "LongStorage": np.dtype("<i8")}


class _Storage:
    def __init__(self, dtype: np.dtype, count: int):
        self.values = np.zeros(count, dtype)


def _tensor(storage: _Storage, offset: int, shape: tuple, strides: tuple, *_) -> np.ndarray:
    """A view of its storage, whose values are read later."""
    size = storage.values.itemsize
    if any(length < 0 for length in (offset, *shape, *strides)):
        raise ValueError("a tensor of a negative size")
    reach = offset + 1 + sum((length - 1) * stride for length, stride in zip(shape, strides))
    if 0 not in shape and reach > storage.values.size:
        raise ValueError("a tensor that is larger than its storage")
    return np.lib.stride_tricks.as_strided(storage.values[offset:], shape, [stride * size for stride in strides])


class _Unpickler(pickle.Unpickler):
    def __init__(self, stream):
        super().__init__(stream, encoding="utf-8")
        self.storages = {}

    def find_class(self, module: str, name: str):
        if (module, name) == ("collections", "OrderedDict"):
            return collections.OrderedDict
        if (module, name) == ("torch._utils", "_rebuild_tensor_v2"):
            return _tensor
        if module == "torch" and name in _DTYPES:
            return _DTYPES[name]
        raise pickle.UnpicklingError(f"{module}.{name} has no place in a file of weights")

    def persistent_load(self, reference):
        kind, dtype, key, _, count, view = reference
        if kind != "storage" or view is not None:
            raise pickle.UnpicklingError(f"{kind!r} has no place in a file of weights")
        return self.storages.setdefault(key, _Storage(dtype, count))


def read_weights(path: Path) -> dict[str, np.ndarray]:
    """Every tensor of the file by its name. Raises ValueError or UnpicklingError for what isn't such a file."""
    with open(path, "rb") as stream:
        if _Unpickler(stream).load() != _MAGIC or _Unpickler(stream).load() != _VERSION:
            raise ValueError(f"{path}: no weights, or of another version")
        if not _Unpickler(stream).load()["little_endian"]:
            raise ValueError(f"{path}: numbers with the high byte first are not understood")
        unpickler = _Unpickler(stream)
        tensors = unpickler.load()
        for key in _Unpickler(stream).load():
            values = unpickler.storages[key].values
            (count,) = struct.unpack("<q", stream.read(8))
            data = stream.read(values.nbytes)
            if count != values.size or len(data) != values.nbytes:
                raise ValueError(f"{path}: cut off, or its sizes don't agree")
            values[:] = np.frombuffer(data, values.dtype)
        if stream.read(1):
            raise ValueError(f"{path}: more bytes than the weights need")
    return {name: np.ascontiguousarray(tensor) for name, tensor in tensors.items()}
