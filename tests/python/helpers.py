"""Pieces the Dask workers import by name."""
import os

import numpy as np


class KillsItsWorkerOnce:
    """An outline whose first conversion to an array ends the worker process
    (a crash in the middle of a batch); the retried task then gets a square."""

    def __init__(self, marker):
        self.marker = marker

    def __array__(self, dtype=None):
        if not os.path.exists(self.marker):
            with open(self.marker, "w"):
                pass
            os._exit(1)
        return np.array([[0, 0], [10, 0], [10, 10], [0, 10]], dtype=float)
