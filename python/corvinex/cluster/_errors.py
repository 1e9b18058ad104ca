"""What a scan on a cluster could not do."""


class ClusterError(Exception):
    """A scan or a merge could not be brought to its end. Parts that were finished stay."""
