"""Prints what OpenTimelineIO reads from a timeline file, of its own kind or FCPXML, as one JSON object."""
import json
import sys

import opentimelineio as otio


def time(value):
    return [round(value.value), round(value.rate, 3)]


def timelines(root):
    """All timelines in what a reader returns: one, or a collection of them."""
    if isinstance(root, otio.schema.Timeline):
        return [root]
    return list(root.find_children(descended_from_type=otio.schema.Timeline))


def clip(item):
    source = item.trimmed_range()
    return {
        "name": item.name,
        "url": getattr(item.media_reference, "target_url", None),
        "start": time(source.start_time),
        "duration": time(source.duration),
        "at": time(item.range_in_parent().start_time),
        "markers": [marker.name for marker in item.markers],
        "bins": list(item.metadata.get("larkspan", {}).get("bins", [])),
    }


def summary(path):
    found = timelines(otio.adapters.read_from_file(path, adapter_name="fcpx_xml" if path.endswith(".fcpxml") else None))
    return [
        {
            "name": timeline.name,
            "duration": time(timeline.duration()),
            "markers": [[marker.name, time(marker.marked_range.start_time)] for marker in timeline.tracks.markers],
            "tracks": [[clip(item) for item in track.find_clips()] for track in timeline.tracks],
        }
        for timeline in found
    ]


print(json.dumps(summary(sys.argv[1])))
