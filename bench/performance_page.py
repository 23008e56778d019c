"""Writes docs/performance.md and docs/performance.svg from the rows that scripts/benchmark measured."""

import datetime
import platform
import subprocess

SIZE_NAMES = {64: "64 B", 4096: "4 KiB", 1 << 20: "1 MiB", 2000: "2,000 units"}
PLOTTED_SIZE = 4096

HEAD = """# Performance

`scripts/benchmark` wrote this page. A ratio says how many times as fast as the fastest of the others the library is at the
same work: it converts the same words, in random order, in the same run. The others are ICU's converters and, for UTF-8, its
functions for that alone; iconv for the set that ICU lacks; `std::u16string` for strings. They take turns in short rounds,
and the fastest round of each counts. What is below the ratio that [`bench/ratios.toml`](../bench/ratios.toml) requires, in
parentheses, is bold.

Measured on {date} at commit {commit}, on {machine}, with the kernels of {level} and ICU {icu}.

![Ratios of texts of 4 KiB](performance.svg)
"""


def processor():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        names = [line.split(":", 1)[1].strip() for line in info if line.startswith("model name")]
    return names[0] if names else platform.processor()


def output(*command, cwd=None):
    return subprocess.run(command, cwd=cwd, check=True, capture_output=True, text=True).stdout.strip()


def table(rows):
    """A line for each operation, a column for each size."""
    sizes = list(dict.fromkeys(row.size for row in rows))
    cells = {(row.name, row.size): f"{'**' if row.is_below() else ''}{row.ratio:.1f}{'**' if row.is_below() else ''}"
                                   f" ({row.required:g})" for row in rows}
    lines = ["| | " + " | ".join(SIZE_NAMES.get(size, str(size)) for size in sizes) + " |", "|---|" + "---:|" * len(sizes)]
    for name in dict.fromkeys(row.name for row in rows):
        lines.append(f"| {name.replace('/', ', ')} | " + " | ".join(cells.get((name, size), "") for size in sizes) + " |")
    return "\n".join(lines)


def plot(rows):
    """A bar for each ratio, on it a mark where what is required ends."""
    bars = [row for row in rows if row.size == PLOTTED_SIZE]
    left, top, step, unit = 190, 30, 16, 22
    longest = max(max(row.ratio, row.required) for row in bars)
    width, height = left + round(longest * unit) + 50, top + step * len(bars) + 10
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
             'font-family="sans-serif" font-size="11">', f'<rect width="{width}" height="{height}" fill="white"/>']
    for ratio in range(0, int(longest) + 1, 2):
        x = left + ratio * unit
        parts.append(f'<path d="M{x} {top - 6}V{height - 8}" stroke="#ddd"/>'
                     f'<text x="{x}" y="{top - 10}" text-anchor="middle">{ratio}</text>')
    for number, row in enumerate(bars):
        y, end, required = top + number * step, left + row.ratio * unit, left + row.required * unit
        colour = "#c55" if row.is_below() else "#58a" if row.name.endswith("decode") else "#6a9"
        parts.append(f'<text x="{left - 6}" y="{y + 10}" text-anchor="end">{row.name.replace("/", ", ")}</text>'
                     f'<rect x="{left}" y="{y}" width="{end - left:.0f}" height="{step - 4}" fill="{colour}"/>'
                     f'<path d="M{required:.0f} {y - 1}v{step - 2}" stroke="black"/>'
                     f'<text x="{end + 4:.0f}" y="{y + 10}">{row.ratio:.1f}</text>')
    return "\n".join([*parts, "</svg>", ""])


def write(root, rows):
    bench = root / "build/benchmark/bench"
    changed = output("git", "status", "--porcelain", "--untracked-files=no", cwd=root)
    head = HEAD.format(date=datetime.date.today(), machine=processor(),
                       commit=output("git", "rev-parse", "--short", "HEAD", cwd=root) + (" with changes" if changed else ""),
                       level=output(bench / "vynulib_start", "--level"), icu=output("pkg-config", "--modversion", "icu-uc"))
    sections = [head]
    for title, program in (("Conversion", "conversion"), ("Strings", "string")):
        sections.append(f"## {title}\n\n" + table([row for row in rows if row.program == program]) + "\n")
    sections.append("## Start and growth\n\n" + output(bench / "vynulib_start") + "\n\n" +
                    output(bench / "vynulib_growth") + "\n")
    (root / "docs/performance.md").write_text("\n".join(sections), encoding="utf-8")
    (root / "docs/performance.svg").write_text(plot(rows), encoding="utf-8")
