# SPDX-License-Identifier: MIT
"""Which phase of a poll or a write an instruction belongs to."""
import os

# In the order in which a request goes through them.
PHASES = (
    ("Output filter: requests to commands",
     ("outputfilter", "cmddesc", "cmdqueue", "tagtable", "tagname", "indexregister", "nameindex", "statuscodes",
      "arrayelement", "datatypes")),
    ("Input filter: steps, paths and records", ("inputfilter", "pathset", "readbatch", "gdata")),
    ("Job: accesses and array bounds",
     ("symbolicreads", "symbolicwrites", "symbolsloader", "accessbuffer", "arrayhelper", "published")),
    ("Forwarding of library calls", ()),
    ("Access buffers to bytes and back", ("bufferreader", "bufferwriter", "valuebytes", "partreaders")),
    ("Conversion and delivery", ("valueconversion", "unaligned")),
    ("Allocation", ()),
    ("Memory copies and comparisons", ()),
    ("Others", ()),
)
NAMES = tuple(name for name, _ in PHASES)
_OF_SOURCE = {source: name for name, sources in PHASES for source in sources}
_ALLOCATING = ("malloc", "calloc", "realloc", "free", "operator new", "operator delete", "_int_", "sysmalloc",
               "unlink_chunk", "tcache", "systrim")
_COPYING = ("mem", "__mem", "str", "__str")


def _of_source(source):
    return _OF_SOURCE.get(os.path.basename(source).split(".")[0])


def split(costs):
    """{phase: instructions} of a row's costs: [object, function, source file, instructions] each.

    A project's source file tells the phase, also where its code was inlined elsewhere. Code of the standard
    library's headers counts to the function that it was inlined into, and that to the source most of it is from."""
    homes = {}
    for obj, function, source, cost in costs:
        phase = _of_source(source)
        if phase is not None and cost > homes.get((obj, function), (0, None))[0]:
            homes[obj, function] = (cost, phase)
    phases = dict.fromkeys(NAMES, 0)
    for obj, function, source, cost in costs:
        if function.startswith("AGL_"):
            phase = "Forwarding of library calls"
        elif function.startswith(_ALLOCATING):
            phase = "Allocation"
        elif function.startswith(_COPYING):
            phase = "Memory copies and comparisons"
        else:
            phase = _of_source(source) or homes.get((obj, function), (0, "Others"))[1]
        phases[phase] += cost
    return phases
