# SPDX-License-Identifier: MIT
"""Reads callgrind's dumps: self cost by object file, function and source file. The dumps must be written with
--compress-strings=no and --compress-pos=no."""


def read(path):
    """{(object, function, source file): instructions} of one dump."""
    costs = {}
    place = {"ob": "", "fn": "", "fl": ""}
    inclusive = False  # the next line is what a call cost, which its callee has already counted
    with open(path, encoding="utf-8", errors="replace") as dump:
        for line in dump:
            key, found, text = line.rstrip("\n").partition("=")
            if found and key in ("ob", "fn"):
                place[key] = text
                if key == "fn":
                    place["source"] = place["fl"]
            elif found and key == "fl":
                place["fl"] = place["source"] = text
            elif found and key in ("fi", "fe"):
                place["source"] = text  # code of another file inside this function
            elif found and key == "calls":
                inclusive = True
            elif line[:1].isdigit() or line[:1] in "+-*":
                if inclusive:
                    inclusive = False
                    continue
                where = (place["ob"], place["fn"], place["source"])
                costs[where] = costs.get(where, 0) + int(line.split()[1])
    return costs


def difference(longer, shorter):
    """What the longer run cost more, by the same keys; costs that are equal are left out."""
    costs = {}
    for where in longer.keys() | shorter.keys():
        cost = longer.get(where, 0) - shorter.get(where, 0)
        if cost != 0:
            costs[where] = cost
    return costs
