"""Results as arrays."""

import json

import numpy as np
import pytest
from gantry import Results

FIELD = "step,date,oil (Sm3/d),group limits,run\n1,2020-01-01,10.5,\"a, b\",x\n2,2020-02-01,,,x\n"
WELLS = (
    "step,date,well,oil (Sm3/d),run\n1,2020-01-01,P1,4,x\n1,2020-01-01,P2,6.5,x\n"
    "2,2020-02-01,P1,3,x\n2,2020-02-01,P2,,x\n3,2020-03-01,P1,1,x\n3,2020-0"
)


def test_tables_of_a_run_that_goes_on_are_read_as_far_as_they_are_whole(tmp_path):
    with pytest.raises(FileNotFoundError, match="holds no run"):
        Results(tmp_path)
    (tmp_path / "run.json").write_text(json.dumps({"title": "T", "end": None}))
    (tmp_path / "field.csv").write_text(FIELD)
    (tmp_path / "wells.csv").write_text(WELLS)
    results = Results(tmp_path)
    assert results.units["oil"] == "Sm3/d" and results.units["step"] == ""
    assert list(results.dates) == [np.datetime64("2020-01-01"), np.datetime64("2020-02-01")]
    np.testing.assert_array_equal(results.field["oil"], [10.5, np.nan])
    assert results.field["group limits"][0] == "a, b"
    np.testing.assert_array_equal(results.wells["P1"]["oil"], [4, 3])
    np.testing.assert_array_equal(results.wells["P2"]["oil"], [6.5, np.nan])
    pandas = pytest.importorskip("pandas")
    assert isinstance(results.frame("field"), pandas.DataFrame)
    with pytest.raises(ValueError, match="no table"):
        results.frame("rates")
