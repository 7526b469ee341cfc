#!/usr/bin/env python3
"""Turns the benchmarks' JSON into tables of ratios and a picture: bench_report.py RESULTS.json DIRECTORY

A benchmark is named ROW/PEER/LENGTH. Its time is the least of its repetitions: whatever else the machine does can only
add to it. A ratio is the peer's time over ours: above 1 we are faster.
"""
import json
import math
import pathlib
import re
import subprocess
import sys
from collections import defaultdict

IN_CACHE = (256, 1024, 4096)
LARGE = 4 << 20
SHORT = range(1, 65)
DIVISION_TARGET = 4
PEERS = ("plain", "volk", "eigen", "openblas", "std", "table", "spandsp")
FAMILIES = {"Convert": "conversions", "Threshold": "thresholds", "Win": "windows", "Goertz": "Goertzel",
            "ALaw|MuLaw|Lin": "companding",
            "Sum|Mean|StdDev|Norm|DotProd|Min|Max|CountInRange": "statistics"}


class Results:
    """times[row][peer][length] in ns, and what the machine is."""

    def __init__(self, path):
        data = json.loads(pathlib.Path(path).read_text())
        self.context = data["context"]
        self.times = defaultdict(lambda: defaultdict(dict))
        self.traffic = {}
        self.bytes = {}
        self.error = {}
        runs = [run for run in data["benchmarks"] if run["run_type"] == "iteration"]
        for run in sorted(runs, key=lambda run: run["family_index"]):  # they ran in random order
            row, peer, length = run["run_name"].split("/")[:3]
            length = int(length)
            lengths = self.times[row][peer]
            lengths[length] = min(run["cpu_time"], lengths.get(length, math.inf))
            self.traffic[row] = int(run["traffic"])
            self.bytes[row, peer, length] = run["bytes"]
            if "error" in run:
                self.error[row, peer, length] = run["error"]

    def rows(self, wanted=lambda row: True):
        return [row for row in self.times if "ours" in self.times[row] and wanted(row)]

    def ratio(self, row, peer, length):
        ours = self.times[row]["ours"].get(length)
        other = self.times[row][peer].get(length) if peer in self.times[row] else None
        return other / ours if ours and other else None

    def ratios(self, row, length):
        """(ratio, peer) for every peer."""
        found = ((self.ratio(row, peer, length), peer) for peer in PEERS)
        return [(ratio, peer) for ratio, peer in found if ratio]

    def speed(self, row, peer, length=LARGE):
        """GB/s, or None."""
        time = self.times[row].get(peer, {}).get(length)
        return self.bytes[row, peer, length] / time if time else None

    def vector_lanes(self, row):
        """Elements a vector of this machine."""
        bits, is_complex = re.search(r"_(\d+)[usf](c?)", row).groups()
        return int(self.context["vector_bytes"]) * 8 // (int(bits) * (2 if is_complex else 1))


def is_division(row):
    return re.match(r"DivC?_\d+[us]", row) is not None


def is_fft(row):
    return row.startswith("FFT_")


def is_correlation(row):
    return re.match(r"(Conv|CrossCorr|AutoCorr)_", row) is not None


def is_dct(row):
    return row.startswith(("DCT_", "DFT_", "Hilbert_"))


def is_in_cache(row):
    return "@" not in row and not any(f(row) for f in (is_division, is_fft, is_correlation, is_dct))


def kind(results, row):
    for start, name in FAMILIES.items():
        if re.match(start, row):
            return name
    if "Sfs" in row:
        return "integers with scale factors"
    return "initialisation" if "std" in results.times[row] else "floating point"


def geometric_mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def cell(value, form="{:.2f}", width=6):
    return (form.format(value) if value else "").rjust(width)


def in_cache_table(results):
    rows = [row for row in results.rows(is_in_cache) if any(n in results.times[row]["ours"] for n in IN_CACHE)]
    if not rows:
        return []
    peers = [peer for peer in PEERS if any(peer in results.times[row] for row in rows)]
    lines = ["In cache: the peer's time over ours, by length", ""]
    lines.append(" " * 24 + "".join(peer.center(19) for peer in peers) + " least")
    lines.append("row".ljust(24) + "".join(" ".join(cell(n, "{}", 5) for n in IN_CACHE) + "  " for _ in peers))
    best = defaultdict(list)
    for row in rows:
        line = row.ljust(24)
        for peer in peers:
            line += " ".join(cell(results.ratio(row, peer, n), width=5) for n in IN_CACHE) + "  "
        least = [(ratio, peer, n) for n in IN_CACHE for ratio, peer in results.ratios(row, n)]
        if least:
            ratio, peer, n = min(least)
            line += f" {ratio:.2f} {peer} {n}" + (" <" if ratio < 0.98 else "")
        lines.append(line)
        for n in IN_CACHE:
            if results.ratios(row, n):
                best[kind(results, row)].append(min(results.ratios(row, n))[0])
    lines += ["", "Geometric mean against the best peer of each row and length:"]
    for name, ratios in best.items():
        lines.append(f"  {name:28}{geometric_mean(ratios):.3f}   ({len(ratios)} ratios, "
                     f"{sum(ratio < 0.98 for ratio in ratios)} of them below 0.98)")
    lines.append(f"  {'all':28}{geometric_mean([ratio for ratios in best.values() for ratio in ratios]):.3f}")
    return lines


def large_rows(results):
    return [row for row in results.rows(is_in_cache) if LARGE in results.times[row]["ours"]]


def machine_speed(results, row):
    """The machine's loop with the same kind of traffic: (name, GB/s)."""
    name = "copy" if results.traffic[row] <= 2 else "triad"
    return name, results.speed("machine", name)


def large_table(results):
    rows = large_rows(results)
    if not rows:
        return []
    lines = [f"Large vectors, {LARGE} elements"]
    for name in ("copy", "triad"):
        if results.speed("machine", name):
            lines.append(f"The machine's {name}: {results.speed('machine', name):.1f} GB/s")
    peers = [peer for peer in PEERS if any(LARGE in results.times[row].get(peer, {}) for row in rows)]
    lines += ["", "row".ljust(20) + "  GB/s  of the machine's" + "".join(peer.rjust(8) for peer in peers)]
    for row in rows:
        name, speed = machine_speed(results, row)
        share = f"{results.speed(row, 'ours') / speed:.2f} {name}" if speed else ""
        lines.append(row.ljust(20) + cell(results.speed(row, "ours"), "{:.1f}") + share.rjust(18) +
                     "".join(cell(results.ratio(row, peer, LARGE), width=8) for peer in peers))
    return lines


def short_rows(results):
    return [row for row in results.rows(is_in_cache) if 1 in results.times[row]["ours"]]


def short_table(results):
    rows = short_rows(results)
    if not rows:
        return []
    lines = ["Short vectors: our ns a call, and how much more than the plain loop behind an ordinary call"]
    lines += ["", "length" + "".join(row.rjust(17) for row in rows)]
    differences = defaultdict(list)
    for n in SHORT:
        line = str(n).rjust(6)
        for row in rows:
            ours = results.times[row]["ours"].get(n)
            plain = results.times[row]["plain"].get(n) if "plain" in results.times[row] else None
            if ours and plain:
                differences[row].append((ours - plain, n))
            line += cell(ours, "{:.2f}", 9) + (f"{ours - plain:+8.2f}" if ours and plain else " " * 8)
        lines.append(line)
    lines += ["", "Mean and largest difference:"]
    for row, found in differences.items():
        worst, n = max(found)
        lines.append(f"  {row:20}{sum(d for d, _ in found) / len(found):+6.2f} ns, {worst:+6.2f} ns at {n}")
    lines += ["", "Lengths that cost over 1 ns more than the next whole multiple of the vector:"]
    for row in rows:
        lanes, ours = results.vector_lanes(row), results.times[row]["ours"]
        late = defaultdict(list)
        for n in SHORT:
            whole = -(-n // lanes) * lanes
            if n in ours and whole in ours and ours[n] > ours[whole] + 1:
                late[whole].append((ours[n], n))
        found = [f"{len(below)} below {whole}, which takes {ours[whole]:.1f} ns: up to {max(below)[0]:.1f} ns at "
                 f"{max(below)[1]}" for whole, below in late.items()]
        lines.append(f"  {row:20}" + ("; ".join(found) or "none"))
    return lines


def division_table(results):
    rows = results.rows(is_division)
    rows = [row for row in rows if results.ratio(row, "plain", 1024)]
    if not rows:
        return []
    lines = [f"Integer division at 1024, against the scalar loop (target {DIVISION_TARGET})", ""]
    for row in rows:
        ratio = results.ratio(row, "plain", 1024)
        lines.append(f"{row:20}{results.times[row]['ours'][1024]:9.0f} ns {ratio:7.2f}" +
                     (" <" if ratio < DIVISION_TARGET else ""))
    return lines


def misaligned_table(results):
    rows = [row for row in results.rows(lambda row: "@" in row and not is_fft(row)) if 4096 in results.times[row]["ours"]]
    if not rows:
        return []
    lines = ["One element off alignment at 4096: time over that of aligned vectors", ""]
    for row in rows:
        line = row.ljust(20)
        for peer in ("ours",) + PEERS:
            aligned = results.times[row.split("@")[0]].get(peer, {}).get(4096)
            if aligned and 4096 in results.times[row].get(peer, {}):
                line += f"  {peer} {results.times[row][peer][4096] / aligned:.2f}"
        lines.append(line)
    return lines


FFT_FORMS = (("", "out"), ("_I", "in place"), ("@all", "unaligned"), ("_Inv", "inverse"))
FFT_LEAST_TRIPS = 14


def fft_table(results):
    kinds = [row for row in results.rows(is_fft) if re.fullmatch(r"FFT_[CR]_\d+fc?", row)]
    if not kinds:
        return []
    lines = ["Fourier transforms of 2^order points against FFTW: GFLOP/s (5 N log2 N / t, real 2.5) and their share",
             "of the core's peak of multiply-adds, the times that copying the source to the result fits into ours",
             "(trips), FFTW's time over ours, our unaligned time over that of aligned data, and relative errors of",
             "both in units of 2^-24 or 2^-53; <: above FFTW's"]
    passes = results.times["machine"]["pass"]
    for kind in kinds:
        part = "64f" if "64" in kind else "32f"
        parts = 1 if "_R_" in kind else 2
        unit = 2.0 ** (-53 if part == "64f" else -24)
        peak = next((2 * n / time for n, time in results.times["machine"][f"fma_{part}"].items()), None)
        lines += ["", kind + (f": the peak is {peak:.0f} GFLOP/s" if peak else ""),
                  "order        ns GFLOP/s  peak trips" + "".join(title.rjust(11) for _, title in FFT_FORMS) +
                  "  @/aligned   ours    fftw"]
        ratios = defaultdict(list)
        for length, ours in sorted(results.times[kind]["ours"].items()):
            order = length.bit_length() - 1
            flops = 2.5 * parts * length * order
            once = passes.get(length * parts * int(part[:2]) // 8) if order >= FFT_LEAST_TRIPS else None
            line = f"{order:5}{ours:10.0f}{flops / ours:8.1f}" + cell(peak and flops / ours / peak)
            line += cell(once and ours / once, "{:.1f}")
            for suffix, title in FFT_FORMS:
                ratio = results.ratio(kind + suffix, "fftw", length) if kind + suffix in results.times else None
                line += (cell(ratio, width=10) + ("<" if ratio and ratio < 1 else " "))
                if ratio:
                    ratios[title].append(ratio)
            unaligned = results.times[kind + "@all"]["ours"].get(length) if kind + "@all" in results.times else None
            line += cell(unaligned and unaligned / ours, width=11)
            errors = [results.error.get((kind, peer, length)) for peer in ("ours", "fftw")]
            line += "".join(cell(error and error / unit, width=8) for error in errors)
            lines.append(line + (" <" if all(errors) and errors[0] > errors[1] else ""))
        if ratios:
            lines.append("geometric mean".ljust(35) +
                         "".join((cell(geometric_mean(ratios[title]), width=10) if title in ratios else " " * 10) + " "
                                 for _, title in FFT_FORMS))
    return lines


CORRELATION_PEERS = ("plain", "eigen", "fftw")


def correlation_table(results):
    rows = results.rows(is_correlation)
    if not rows:
        return []
    lengths = sorted({n for row in rows for n in results.times[row]["ours"]})
    lines = ["Correlation and convolution with :N elements or lags: the best peer's time over ours, by length", ""]
    lines.append(" " * 22 + "".join(str(n).rjust(10) for n in lengths))
    best = defaultdict(list)
    for row in rows:
        line = row.ljust(22)
        for n in lengths:
            found = [(results.ratio(row, peer, n), peer) for peer in CORRELATION_PEERS if peer in results.times[row]]
            ratio, peer = min(((ratio, peer) for ratio, peer in found if ratio), default=(None, ""))
            line += cell(ratio, width=5) + f" {peer[:1]:1}" + ("<  " if ratio and ratio < 1 else "   ")
            if ratio:
                best[row.split(":")[0]].append(ratio)
        lines.append(line)
    lines += ["", "Geometric mean against the best peer (p: plain loops, e: Eigen, f: FFTW) of each row and length:"]
    for name, ratios in best.items():
        lines.append(f"  {name:20}{geometric_mean(ratios):.2f}   ({sum(ratio < 1 for ratio in ratios)} of {len(ratios)} "
                     "below 1)")
    return lines


def dct_table(results):
    rows = results.rows(is_dct)
    if not rows:
        return []
    lines = ["Cosine, Fourier and Hilbert transforms of any length: our ns, FFTW's time over ours, and relative errors of",
             "both in units of 2^-24 or 2^-53"]
    for row in rows:
        unit = 2.0 ** (-53 if "64" in row else -24)
        lines += ["", f"{row:16}length        ns   ratio    ours    fftw"]
        ratios = []
        for length, ours in sorted(results.times[row]["ours"].items()):
            ratio = results.ratio(row, "fftw", length)
            errors = [results.error.get((row, peer, length)) for peer in ("ours", "fftw")]
            lines.append(f"{length:22}{ours:10.1f}" + cell(ratio, width=8) +
                         "".join(cell(error and error / unit, width=8) for error in errors) +
                         (" <" if ratio and ratio < 1 else ""))
            if ratio:
                ratios.append(ratio)
        if ratios:
            lines.append("geometric mean".ljust(32) + cell(geometric_mean(ratios), width=8))
    return lines


def quoted(text):
    return '"' + text.replace("_", " ") + '"'


def picture(results, path):
    """Ratios in cache, short calls and large vectors, one under the other; whatever was measured."""
    data, plots = [], []

    def block(name, lines):
        data.append(f"${name} << EOD\n" + "\n".join(lines) + "\nEOD\n")

    rows = [row for row in results.rows(is_in_cache) if all(results.ratios(row, n) for n in IN_CACHE)]
    if rows:
        block("cache", [f"{i} {quoted(row)} " + " ".join(f"{min(results.ratios(row, n))[0]:.3f}" for n in IN_CACHE)
                        for i, row in enumerate(rows)])
        plots.append((2, 'set title "In cache: best peer\'s time over ours (above 1: we are faster)"\n'
                      f"set logscale y 2; set xrange [-0.7:{len(rows) - 0.3}]; set xtics rotate by 90 right scale 0\n"
                      'set arrow 1 from graph 0, first 1 to graph 1, first 1 nohead lc rgb "#444444" lw 2 back\n'
                      "plot " + ", ".join(f'$cache using 1:{3 + i}:xtic(2) with points pt 7 lc {i + 1} title "{n}"'
                                          for i, n in enumerate(IN_CACHE))))
    rows = short_rows(results)
    if rows:
        block("short", [f"{n} " + " ".join(f"{results.times[row][peer].get(n, 'NaN')}" if peer in results.times[row]
                                           else "NaN" for row in rows for peer in ("ours", "plain"))
                        for n in SHORT])
        lines = []
        for i, row in enumerate(rows):
            lines.append(f"$short using 1:{2 + 2 * i} with lines lw 2.5 lc {i + 1} title {quoted(row)}")
            lines.append(f"$short using 1:{3 + 2 * i} with lines lw 1.2 dt 3 lc {i + 1} notitle")
        plots.append((2, 'set title "Short vectors: ns a call by length; dotted: the plain loop"\n'
                      "unset logscale; set xrange [1:64]; set xtics norotate 8 autojustify; set yrange [0:*]\n"
                      "set xlabel \"elements\"; set ylabel \"ns\"; plot " + ", ".join(lines)))
    rows = [row for row in large_rows(results) if machine_speed(results, row)[1]]
    if rows:
        block("large", [f"{i} {quoted(row)} {results.speed(row, 'ours') / machine_speed(results, row)[1]:.3f} "
                        f"{(results.speed(row, 'plain') or math.nan) / machine_speed(results, row)[1]:.3f}"
                        for i, row in enumerate(rows)])
        plots.append((1, 'set title "Large vectors: share of the machine\'s copy or triad speed"\n'
                      f"unset xlabel; unset ylabel; set xrange [-0.7:{len(rows) - 0.3}]; set yrange [0:*]\n"
                      "set xtics rotate by 90 right scale 0; set style fill solid 0.8 noborder; set boxwidth 0.35\n"
                      'set arrow 1 from graph 0, first 1 to graph 1, first 1 nohead lc rgb "#444444" lw 2 back\n'
                      'plot $large using ($1-0.18):3:xtic(2) with boxes lc 1 title "ours", '
                      '$large using ($1+0.18):4 with boxes lc 2 title "plain loop"'))
    if not plots:
        return False
    height = sum(weight for weight, _ in plots)
    script = "".join(data) + (f'set terminal pngcairo size 1700,{380 * height} font "sans,13" background "white"\n'
                              f'set output "{path}"\nset multiplot\nset grid y\nset key outside right top\n'
                              "set lmargin 8; set rmargin 22\n")
    top = 1.0
    for weight, plot in plots:
        top -= weight / height
        script += (f"set origin 0,{top:.4f}; set size 1,{weight / height:.4f}\n{plot}\n"
                   "unset arrow 1; set autoscale; unset logscale; set xtics autofreq\n")
    subprocess.run(["gnuplot"], input=script + "unset multiplot\n", text=True, check=True)
    return True


def main():
    source, directory = sys.argv[1], pathlib.Path(sys.argv[2])
    results = Results(source)
    context = results.context
    head = [f"{context['date'][:16]}, {context['num_cpus']} processors at {context['mhz_per_cpu']} MHz, vectors of "
            f"{context['vector_bytes']} bytes, VOLK's machine {context['volk_machine']}",
            "Least time of all repetitions; ratios above 1: we are faster; <: a peer is faster or a target is missed"]
    tables = [table(results) for table in (in_cache_table, large_table, short_table, division_table, misaligned_table,
                                                      fft_table, correlation_table, dct_table)]
    text = "\n\n".join("\n".join(line.rstrip() for line in table) for table in [head] + tables if table) + "\n"
    (directory / "latest.txt").write_text(text)
    print(text)
    image = directory / "latest.png"
    print(f"Saved: {directory / 'latest.txt'}" + (f" and {image}" if picture(results, image) else ""))


if __name__ == "__main__":
    main()
