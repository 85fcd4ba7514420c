#!/usr/bin/env python3
"""Looks at the page of palvor-kit report as a reader does, in Chromium.

usage: report_page.py PALVOR PALVOR_KIT [SCREENSHOT.png]

Ends with status 77 if there is no Chromium here.
"""

import base64
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

HOSTILE = "</script><img src=x onerror=\"console.error('met')\"><!--&amp;'"


class Browser:
    """Chromium without a window, which is talked to by two pipes."""

    def __init__(self, program, profile):
        to_browser, self.to = os.pipe()
        self.of, from_browser = os.pipe()
        # The browser reads from descriptor 3 and writes to 4.
        line = (f"exec {program} --headless --no-sandbox --disable-gpu "
                "--disable-dev-shm-usage --remote-debugging-pipe "
                f"--user-data-dir={profile} about:blank "
                f"3<&{to_browser} 4>&{from_browser}")
        self.process = subprocess.Popen(
            ["bash", "-c", line], pass_fds=(to_browser, from_browser),
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.buffer = b""
        self.sent = 0
        self.events = []
        self.session = None

    def receive(self):
        while b"\0" not in self.buffer:
            block = os.read(self.of, 1 << 16)
            if not block:
                raise RuntimeError("the browser has ended")
            self.buffer += block
        message, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **parameters):
        self.sent += 1
        message = {"id": self.sent, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.to, json.dumps(message).encode() + b"\0")
        while True:
            answer = self.receive()
            if answer.get("id") != self.sent:
                self.events.append(answer)
            elif "error" in answer:
                raise RuntimeError(f"{method}: {answer['error']}")
            else:
                return answer["result"]

    def wait_for(self, method):
        while all(event.get("method") != method for event in self.events):
            self.events.append(self.receive())

    def open(self, address):
        target = self.call("Target.createTarget", url="about:blank")
        self.session = self.call("Target.attachToTarget", flatten=True,
                                 targetId=target["targetId"])["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")
        self.call("Emulation.setDeviceMetricsOverride", width=1200,
                  height=1000, deviceScaleFactor=1, mobile=False)
        self.call("Page.navigate", url=address)
        self.wait_for("Page.loadEventFired")

    def evaluate(self, script):
        result = self.call("Runtime.evaluate", expression=script,
                           returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{script}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def press(self, key, code):
        for kind in ("rawKeyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, code=key,
                      windowsVirtualKeyCode=code)

    def complaints(self):
        """What the console has, and what was asked of the network."""
        found = []
        for event in self.events:
            method, of = event.get("method"), event.get("params", {})
            if method in ("Runtime.exceptionThrown",
                          "Runtime.consoleAPICalled", "Log.entryAdded"):
                found.append(json.dumps(of))
            if method == "Network.requestWillBeSent":
                url = of["request"]["url"]
                if not url.startswith("file:"):
                    found.append("asked for " + url)
        return found

    def screenshot(self, path):
        data = self.call("Page.captureScreenshot", captureBeyondViewport=True)
        Path(path).write_bytes(base64.b64decode(data["data"]))

    def close(self):
        self.call("Browser.close")
        self.process.wait(30)


def make_page(folder, palvor, kit):
    """Four genomes, three of them strains, one with a hostile name."""
    rng = random.Random(7)
    ancestor = [rng.choice("ACGT") for _ in range(4000)]
    files = []
    groups = ""
    for number in range(4):
        text = [rng.choice("ACGT") if rng.random() < 0.02 * number else c
                for c in ancestor]
        if number == 3:
            text = [rng.choice("ACGT") for _ in range(2500)]
        files.append(str(folder / f"genome{number}.fa"))
        Path(files[-1]).write_text(f">record{number}\n{''.join(text)}\n")
        name = HOSTILE if number == 2 else f"strain {number}"
        groups += f"genome{number}.fa\t{name}\tgroup\n"
    (folder / "groups.tsv").write_text(groups)
    (folder / "m.ST").mkdir()
    run = lambda *words: subprocess.run(words, check=True, text=True,
                                        capture_output=True)
    run(kit, "prepare", "-o", f"{folder}/", "-p", "d", "--strands", "both",
        *files)
    log = run(palvor, f"{folder}/", "d", "-p", "m", "-a", "-l").stderr
    (folder / "log").write_text(log)
    told = run(kit, "report", f"{folder}/", "d", "-p", "m", "--groups",
               str(folder / "groups.tsv"), "--log", str(folder / "log"))
    return told.stdout.split("\n")[0]


def expect(what, holds):
    if not holds:
        raise SystemExit(f"report_page.py: {what}")


def look(browser, screenshot):
    browser.open_page()
    shown = lambda: browser.evaluate(
        "document.getElementById('k-shown').textContent")
    curve = lambda: browser.evaluate(
        "document.querySelector('#growth .curve').getAttribute('d')")
    expect("the page shows k = 21 first", shown() == "21")
    first = curve()
    expect("the curve has a point for each genome", first.count("L") == 3)
    if screenshot:
        browser.screenshot(screenshot)
    browser.evaluate("document.getElementById('k').focus()")
    for _ in range(12):
        browser.press("ArrowLeft", 37)
    expect("the keyboard moves the slider", shown() == "9")
    expect("the slider changes the curve", curve() != first)
    browser.press("End", 35)
    expect("the slider goes up to the last k", shown() == "100")
    expect("the name is shown as text", HOSTILE in browser.evaluate(
        "document.getElementById('collection').innerText"))
    expect("the name is no element",
           browser.evaluate("document.images.length") == 0)
    expect("the heat map has a cell for each pair", browser.evaluate(
        "[...document.querySelectorAll('#distances rect title')].length")
        == 16)
    expect("the run is told", "memory asked for" in browser.evaluate(
        "document.getElementById('run').innerText"))
    expect("nothing is undefined", not any(
        word in browser.evaluate("document.body.innerText")
        for word in ("undefined", "NaN", "[object")))
    complaints = browser.complaints()
    expect("the console is silent: " + "; ".join(complaints), not complaints)


def main():
    program = shutil.which("chromium")
    if not program:
        print("report_page.py: skipped: no chromium here")
        raise SystemExit(77)
    screenshot = sys.argv[3] if len(sys.argv) > 3 else None
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as name:
        folder = Path(name)
        page = make_page(folder, sys.argv[1], sys.argv[2])
        browser = Browser(program, folder / "profile")
        browser.open_page = lambda: browser.open(Path(page).as_uri())
        try:
            look(browser, screenshot)
        finally:
            browser.process.poll()
            browser.close()
    print("The page is as it should be.")


main()
