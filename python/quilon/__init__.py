"""Results of finite-element calculations: read, averaged, compared.

    import quilon

    with quilon.open("job.fed") as db:
        for block in db.blocks("stress@sub=last"):
            print(block.time, block.component("mises").max())

Arrays are NumPy arrays; ids are the model's own, integers. Values are in the units of the calculation. Everything that
is wrong with data or arguments raises quilon.Error, which tells file and line where there is one.
"""

from ._answers import (
    CombineReport,
    Envelope,
    Extreme,
    MaxReport,
    Path,
    PathStep,
    combine,
    component,
    envelope,
    max,
    path,
    principal_axes,
    principal_values,
)
from ._database import Block, Database, Mesh, Step, open
from ._errors import ArgumentError, Error, MissingPackageError
from ._fields import AverageField, ElementForces
from ._native import version as __version__
from ._reports import Deviation, Difference, DiffReport, ImportReport, diff, import_results
from ._views import ExportReport, PageReport, Picture, export, plot, report

__all__ = [
    "ArgumentError",
    "AverageField",
    "Block",
    "CombineReport",
    "Database",
    "Deviation",
    "DiffReport",
    "Difference",
    "ElementForces",
    "Envelope",
    "Error",
    "ExportReport",
    "Extreme",
    "ImportReport",
    "MaxReport",
    "Mesh",
    "MissingPackageError",
    "PageReport",
    "Path",
    "PathStep",
    "Picture",
    "Step",
    "__version__",
    "combine",
    "component",
    "diff",
    "envelope",
    "export",
    "import_results",
    "max",
    "open",
    "path",
    "plot",
    "principal_axes",
    "principal_values",
    "report",
]
