"""What findings mean, in the words of `corvinex explain`."""

import functools
import importlib.resources
import json
from dataclasses import dataclass


@dataclass(frozen=True)
class Explanation:
    """What the ID of a finding means, what becomes of the data, and what one can do."""

    severity: str | None = None
    meaning: str = ""
    outcome: str = ""
    advice: str = ""


@functools.cache
def explanations() -> dict[str, Explanation]:
    """All explanations by ID. scripts/dev/explanations writes the file that they stand in."""
    resource = importlib.resources.files(__package__).joinpath("explanations.json")
    rows = json.loads(resource.read_text("utf-8"))
    return {name: Explanation(**row) for name, row in rows.items()}
