"""pdf-render-html beside the same engine's own command and beside weasyprint, which lays out without a browser."""

import json
import os

SIZES = (1, 2_000)
ENGINES = ("/usr/lib/chromium/chromium-headless-shell", "/usr/lib/chromium/chromium")


def document(rows):
    """One page of text, or a table of so many rows."""
    if rows == 1:
        body = "<h1>A letter</h1>" + "<p>" + "Words that fill a paragraph of a letter. " * 12 + "</p>"
    else:
        cells = "".join(f"<tr><td>{n}</td><td>Item number {n}</td><td>{n * 7 % 1000}.00</td></tr>" for n in range(rows))
        body = f"<table>{cells}</table>"
    return ("<!DOCTYPE html><html><head><meta charset='utf-8'><style>body { font: 11pt sans-serif } "
            "td { border: 1px solid #999; padding: 2px 6px }</style></head><body>" + body + "</body></html>")


def engine_command(bench, page, output):
    """The engine keeps its sandbox only for an ordinary user."""
    engine = next((path for path in ENGINES if os.path.exists(path)), None)
    if engine is None:
        bench.omit("pdf-render-html", "no engine (Debian package chromium-headless-shell)")
        return None
    profile = bench.work / "engine-profile"
    profile.mkdir(exist_ok=True)
    lowered = []
    if os.geteuid() == 0:
        os.chown(profile, 65534, 65534)
        lowered = ["/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]
    return [*lowered, engine, "--headless", "--disable-gpu", f"--user-data-dir={profile}", "--no-pdf-header-footer",
            f"--print-to-pdf={profile / output}", f"file://{page}"]


def measure_document(bench, rows, weasyprint):
    page = bench.work / f"page-{rows}.html"
    page.write_text(document(rows), encoding="utf-8")
    request = bench.work / f"page-{rows}.json"
    request.write_text(json.dumps({"html": document(rows), "outputPath": str(bench.work / "ours.pdf")}),
                       encoding="utf-8")
    label = "one page" if rows == 1 else f"table of {rows:,} rows"
    ours = [bench.broker, "pdf-render-html", "--request", str(request)]
    engine = engine_command(bench, page, "theirs.pdf")
    if engine is None:
        return
    bench.compare(f"{label}", {"pdf-render-html": ours, "the engine's --print-to-pdf": engine}, 9, 1)
    if weasyprint:
        theirs = [weasyprint, str(page), str(bench.work / "weasyprint.pdf")]
        bench.compare(f"{label}, again", {"pdf-render-html": ours, "weasyprint": theirs}, 3, 1)


def measure(bench, sizes):
    bench.work.chmod(0o755)  # for the engine's user
    weasyprint = bench.peer("weasyprint")
    for rows in sizes:
        measure_document(bench, rows, weasyprint)
