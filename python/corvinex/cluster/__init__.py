"""Reads collections that are too large for one machine, on Dask distributed.

Three lines do it, on a cluster whose workers see the files and the folder for the results under the
same names as the client::

    client = distributed.Client("scheduler:8786")
    corvinex.cluster.scan("/data/images", client, "/data/catalogue")
    corvinex.cluster.merge("/data/catalogue", "/data/images.sqlite")
"""

from corvinex.cluster._client import Client, Future
from corvinex.cluster._errors import ClusterError
from corvinex.cluster._manifest import Manifest, PartEntry, UnreadableFile
from corvinex.cluster._merge import Merged, merge
from corvinex.cluster._scan import scan

__all__ = [
    "Client",
    "ClusterError",
    "Future",
    "Manifest",
    "Merged",
    "PartEntry",
    "UnreadableFile",
    "merge",
    "scan",
]
