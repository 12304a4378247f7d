#!/usr/bin/env python3
"""Writes docs/performance.md and docs/performance.svg, and the figures of README.md, from one run of the benchmark.

    performance.py RESULTS BUILD_FOLDER

RESULTS is the file that the benchmark wrote. Sizes, relocations and load times are measured here, from the libraries in
BUILD_FOLDER. In each document, the text between the markers `<!-- measured -->` and `<!-- /measured -->` is replaced.
"""

import math
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parents[2]
BEGIN, END = "<!-- measured -->", "<!-- /measured -->"
# The rows in README.md: work and peer.
FRONT_PAGE = [
    ('PutF("%s=%d:%02x")', "snprintf"),
    ("PutS, 16 bytes", "g_string_append"),
    ("parameter list, write", "msgpack"),
    ("parameter list, read", "msgpack"),
    ("MD5 of 1 MiB", "OpenSSL"),
    ("CRC-8 of 1 MiB", "boost::crc_optimal"),
    ("UTF-8 check, mixed, 64 KiB", "g_utf8_validate"),
]
START_RUNS = 101
LARGEST_FRAMES = 12


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def read_results(path):
    results = {"row": [], "point": [], "object": []}
    for line in pathlib.Path(path).read_text().splitlines():
        kind, *fields = line.split("\t")
        results[kind].append(fields)
    return results


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def machine():
    compiler = output_of("g++", "--version").splitlines()[0]
    libc = " ".join(platform.libc_ver())
    return f"{processor()}, {os.cpu_count()} processors, {platform.machine()}; {compiler}; {libc}"


def duration(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def ratio(value):
    return f"{float(value):.2f}" if float(value) >= 0.095 else f"{float(value):.3f}"


def rows_table(rows):
    lines = ["| work | peer | ours | peer's | ratio, pass 1 | pass 2 | at most | |",
             "| --- | --- | ---: | ---: | ---: | ---: | ---: | --- |"]
    for work, peer, ours, theirs, first, second, limit, verdict in rows:
        at_most = f"{float(limit):g}" if float(limit) > 0 else "–"
        state = {"missed": "**missed**", "-": "–"}.get(verdict, verdict)
        lines.append(f"| `{work}` | `{peer}` | {duration(float(ours))} | {duration(float(theirs))} | {ratio(first)} | "
                     f"{ratio(second)} | {at_most} | {state} |")
    return lines


def points_by_series(points):
    series = {}
    for name, peer, size, ours, theirs in points:
        series.setdefault((name, peer), []).append((int(size), float(ours), float(theirs)))
    return series


def growth_table(points):
    lines = ["| work | peer | sizes | ours | peer's |", "| --- | --- | --- | --- | --- |"]
    for (name, peer), values in points_by_series(points).items():
        sizes = ", ".join(f"{size:,}" for size, _, _ in values).replace(", ", " / ")
        ours = " / ".join(duration(value) for _, value, _ in values)
        theirs = " / ".join(duration(value) for _, _, value in values)
        lines.append(f"| `{name}` | `{peer}` | {sizes} | {ours} | {theirs} |")
    return lines


def plot(points):
    """Returns an SVG image with one panel for each series; both axes are logarithmic."""
    width, height, columns = 300, 210, 3
    left, right, top, bottom = 52, 28, 40, 34
    series = points_by_series(points)
    rows = math.ceil(len(series) / columns)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{columns * width}" height="{rows * height}" '
             f'viewBox="0 0 {columns * width} {rows * height}" font-family="sans-serif" font-size="10">',
             '<rect width="100%" height="100%" fill="white"/>']
    for index, ((name, peer), values) in enumerate(series.items()):
        x0, y0 = index % columns * width, index // columns * height
        low_x, high_x = math.log10(values[0][0]), math.log10(values[-1][0])
        times = [time for value in values for time in value[1:]]
        low_y = math.floor(math.log10(min(times)))
        high_y = max(math.ceil(math.log10(max(times))), low_y + 1)

        def place(size, nanoseconds):
            x = x0 + left + (math.log10(size) - low_x) / (high_x - low_x) * (width - left - right)
            y = y0 + top + (high_y - math.log10(nanoseconds)) / (high_y - low_y) * (height - top - bottom)
            return f"{x:.1f}", f"{y:.1f}"

        parts.append(f'<text x="{x0 + 8}" y="{y0 + 14}" font-weight="bold">{escape(name)}</text>')
        parts.append(f'<text x="{x0 + 8}" y="{y0 + 28}" fill="#0050b0">ours</text>')
        parts.append(f'<text x="{x0 + 40}" y="{y0 + 28}" fill="#b05000">{escape(peer)}</text>')
        for exponent in range(low_y, high_y + 1):
            begin, end = place(values[0][0], 10.0 ** exponent), place(values[-1][0], 10.0 ** exponent)
            parts.append(f'<path d="M{begin[0]},{begin[1]}H{end[0]}" stroke="#dddddd"/>')
            parts.append(f'<text x="{x0 + left - 5}" y="{float(begin[1]) + 3:.1f}" text-anchor="end">'
                         f"{duration(10.0 ** exponent)}</text>")
        for size, _, _ in values:
            x, y = place(size, 10.0 ** low_y)
            parts.append(f'<text x="{x}" y="{float(y) + 14:.1f}" text-anchor="middle">{size:,}</text>')
        for side, color in ((2, "#b05000"), (1, "#0050b0")):
            places = [place(value[0], value[side]) for value in values]
            line = " ".join(f"{x},{y}" for x, y in places)
            parts.append(f'<polyline points="{line}" fill="none" stroke="{color}" stroke-width="1.5"/>')
            parts += [f'<circle cx="{x}" cy="{y}" r="2.5" fill="{color}"/>' for x, y in places]
    parts.append("</svg>")
    return "\n".join(parts) + "\n"


def stripped_size(library, folder):
    stripped = folder / library.name
    subprocess.run(["strip", "--strip-unneeded", "-o", stripped, library], check=True)
    return stripped.stat().st_size


def relocations(library):
    counts = re.findall(r"contains (\d+) entr", output_of("readelf", "-r", "-W", library))
    return sum(int(count) for count in counts)


def system_library(name):
    found = re.search(rf"{re.escape(name)}\S* \(libc6.*\) => (\S+)", output_of("/sbin/ldconfig", "-p"))
    return pathlib.Path(found.group(1)).resolve() if found else None


def start_times(programs):
    """Returns the median time in microseconds that each program needs from its creation to its end."""
    times = {name: [] for name in programs}
    for _ in range(START_RUNS):
        for name, program in programs.items():
            begin = time.perf_counter()
            os.waitpid(os.posix_spawn(program, [str(program)], os.environ), 0)
            times[name].append((time.perf_counter() - begin) * 1e6)
    return {name: statistics.median(values) for name, values in times.items()}


def libraries_table(build):
    own = [build / "libVXfw.so", build / "libVXut.so"]
    groups = {"VXut and VXfw": own}
    for name, soname in (("GLib", "libglib-2.0.so.0"), ("Poco Foundation", "libPocoFoundation.so")):
        library = system_library(soname)
        if library is not None:
            groups[name] = [library]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        source = folder / "empty.cpp"
        source.write_text("int main() {}\n")
        programs = {}
        for number, (title, libraries) in enumerate([("libstdc++ only", []), *groups.items()]):
            programs[title] = folder / f"empty{number}"
            subprocess.run(["g++", "-O2", "-o", programs[title], source, "-Wl,--no-as-needed", "-lstdc++", *libraries,
                            f"-Wl,-rpath,{build}"], check=True)
        start = start_times(programs)
        lines = ["| libraries | stripped size | relocations | start and end of an empty program |",
                 "| --- | ---: | ---: | ---: |", f"| none but libstdc++ | – | – | {start['libstdc++ only']:.0f} µs |"]
        for title, libraries in groups.items():
            size = sum(stripped_size(library.resolve(), folder) for library in libraries)
            count = sum(relocations(library) for library in libraries)
            lines.append(f"| {title} | {size / 1024:.0f} KiB | {count:,} | {start[title]:.0f} µs |")
    return lines


def stack_table(build):
    """Lists the functions of the libraries with the largest stack frames, as the compiler reports them."""
    frames = {}
    for folder in ("src", "framework"):
        for report in (build / folder).rglob("*.su"):
            for line in report.read_text().splitlines():
                place, size, kind = line.split("\t")
                function = place.split(":", 3)[3]
                frames[function] = max(frames.get(function, (0, "")), (int(size), kind))
    largest = sorted(frames.items(), key=lambda item: (-item[1][0], item[0]))[:LARGEST_FRAMES]
    lines = ["| function | bytes of stack |", "| --- | ---: |"]
    lines += [f"| `{function}` | {size:,}{' and more' if kind == 'dynamic' else ''} |"
              for function, (size, kind) in largest]
    return lines


def instructions_table():
    lines = ["| operation | x86-64 | 32-bit ARM |", "| --- | ---: | ---: |"]
    for line in (ROOT / "bench/instructions.txt").read_text().splitlines()[1:]:
        name, own, arm = line.split()
        lines.append(f"| `{name}` | {float(own):,.0f} | {float(arm):,.0f} |")
    return lines


def objects_table(objects):
    lines = ["| class | bytes |", "| --- | ---: |"]
    lines += [f"| `{name}` | {size} |" for name, size in objects]
    return lines


def replace_measured(path, lines):
    text = path.read_text()
    head, rest = text.split(BEGIN, 1)
    _, tail = rest.split(END, 1)
    path.write_text(head + BEGIN + "\n\n" + "\n".join(lines) + "\n\n" + END + tail)


def front_page(rows):
    by_name = {(row[0], row[1]): row for row in rows}
    lines = [f"Processor time on {processor()}; a ratio below 1 means that VXut is faster:", "",
             "| operation | VXut | compared with | ratio |", "| --- | ---: | --- | ---: |"]
    for key in FRONT_PAGE:
        work, peer, ours, theirs, _, second, *_ = by_name[key]
        lines.append(f"| `{work}` | {duration(float(ours))} | `{peer}`: {duration(float(theirs))} | {ratio(second)} |")
    return lines


def main():
    results, build = read_results(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    rows = results["row"]
    missed = sum(row[-1] == "missed" for row in rows)
    limited = sum(float(row[6]) > 0 for row in rows)
    lines = [f"Machine: {machine()}.", "", "## Beside other libraries", "",
             f"{limited} of {len(rows)} rows have a limit; {missed} of these {limited} miss it.", "", *rows_table(rows),
             "", "## Growth", "", "Time for one operation, or for each element or byte.", "",
             "![Time of each operation at four sizes](performance.svg)", "", *growth_table(results["point"]), "",
             "## Size and start", "", *libraries_table(build), "", "## Stack", "",
             "The largest frames; a call also needs those of the functions that it calls.", "", *stack_table(build), "",
             "## Instructions", "",
             "For one call, as `./scripts/test instructions` counts them, with those of the loop around it.", "",
             *instructions_table(), "", "## Objects", "", *objects_table(results["object"])]
    (ROOT / "docs/performance.svg").write_text(plot(results["point"]))
    replace_measured(ROOT / "docs/performance.md", lines)
    replace_measured(ROOT / "README.md", front_page(rows))


if __name__ == "__main__":
    main()
