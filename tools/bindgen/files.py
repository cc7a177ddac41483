"""Writing generated files."""
from __future__ import annotations

import os


def write(path: str, text: str) -> None:
    """Writes `text` to `path` unless the file already holds it: an output left
    untouched rebuilds nothing that depends on it (Ninja looks at outputs again
    after their command ran)."""
    try:
        with open(path, encoding="utf-8") as handle:
            if handle.read() == text:
                return
    except OSError:
        pass
    os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
    with open(path, "w", encoding="utf-8") as handle:
        handle.write(text)
