# SPDX-License-Identifier: MIT
"""The changes that no test can notice, each with its reason: survivors.toml."""

import tomllib


class Survivors:
    def __init__(self, path):
        self.reasons, self.used = {}, set()
        if not path.exists():
            return
        with open(path, "rb") as file:
            entries = tomllib.load(file).get("equivalent", [])
        for entry in entries:
            if not entry.get("why", "").strip():
                raise ValueError(f"{path.name}: the entry for {entry.get('file')}, {entry.get('code')!r}, gives no reason (why)")
            key = (entry["file"], entry["code"], entry["before"], entry["after"], entry.get("nth", 0))
            if key in self.reasons:
                raise ValueError(f"{path.name}: {key} stands there twice")
            self.reasons[key] = entry["why"]

    def reason(self, key):
        return self.reasons.get(tuple(key))

    def stale(self, changes):
        """The entries whose place no longer is as they say."""
        there = {change.key() for change in changes}
        return [key for key in self.reasons if key not in there]
