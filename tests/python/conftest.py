"""What the tests share: the examples, the built programs, and a folder of results for each test."""

import os
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


@pytest.fixture
def examples() -> Path:
    return ROOT / "examples"


@pytest.fixture
def fieldrun() -> str:
    return os.environ["FIELDRUN"]
