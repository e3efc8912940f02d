"""A headless Chromium, driven through its own driver with nothing but the standard library."""
import base64
import json
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

ENTER, ESCAPE, TAB, UP, DOWN = "\ue007", "\ue00c", "\ue004", "\ue013", "\ue015"

for tool, package in (("chromium", "chromium"), ("chromedriver", "chromium-driver")):
    if shutil.which(tool) is None:
        sys.exit(f"there is no {tool}; please install the Debian package {package}")


# Whatever proxy the environment names is not for the driver on this machine.
OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


class Browser:
    """One window. Ends with the with statement."""

    def __enter__(self):
        self.profile = tempfile.TemporaryDirectory(prefix="systally-chromium-")
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True,
                                       stderr=subprocess.DEVNULL)
        for line in self.driver.stdout:
            if "successfully on port " in line:
                self.root = "http://127.0.0.1:" + line.rstrip(".\n").rsplit(" ", 1)[1]
                break
        arguments = ["--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                     "--disable-dev-shm-usage", f"--user-data-dir={self.profile.name}"]
        self.root += "/session"
        try:
            session = self.ask("", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": {"args": arguments},
                "goog:loggingPrefs": {"browser": "ALL"}}}})
        except BaseException:
            self.stop()
            raise
        self.root += "/" + session["sessionId"]
        return self

    def __exit__(self, *_):
        try:
            self.ask("", method="DELETE")
        finally:
            self.stop()

    def stop(self):
        self.driver.terminate()
        self.driver.wait()
        self.driver.stdout.close()
        self.profile.cleanup()

    def ask(self, path, body=None, method=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.root + path, data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with OPENER.open(request, timeout=120) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(json.load(error)["value"]["message"]) from None

    def open(self, file):
        """Loads a page afresh, also when only the part behind # differs."""
        self.ask("/url", {"url": "about:blank"})
        self.ask("/url", {"url": "file://" + file})

    def run(self, script, *arguments):
        return self.ask("/execute/sync", {"script": script, "args": list(arguments)})

    def cdp(self, command, **parameters):
        return self.ask("/goog/cdp/execute", {"cmd": command, "params": parameters})

    def metric(self, name):
        """One of the figures of Performance.getMetrics, which must be enabled."""
        metrics = self.cdp("Performance.getMetrics")["metrics"]
        return next(metric["value"] for metric in metrics if metric["name"] == name)

    def element(self, selector):
        found = self.ask("/element", {"using": "css selector", "value": selector})
        return "/element/" + next(iter(found.values()))

    def click(self, selector):
        self.ask(self.element(selector) + "/click", {})

    def type(self, keys, selector=None):
        """Types into an element, or wherever the focus is."""
        if selector:
            self.ask(self.element(selector) + "/value", {"text": keys})
            return
        strokes = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.ask("/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": strokes}]})

    def show(self, width, height, scheme="light", media=""):
        """The screen's size, in the pixels of a page, and what the reader prefers."""
        self.cdp("Emulation.setDeviceMetricsOverride", width=width, height=height,
                 deviceScaleFactor=1, mobile=False)
        self.cdp("Emulation.setEmulatedMedia", media=media,
                 features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.ask("/screenshot")))

    def messages(self):
        """What the page complained about since the last question."""
        return [entry["message"] for entry in self.ask("/se/log", {"type": "browser"})]

    def wait_for(self, script, *arguments):
        """The script's value as soon as it is true; the last one when that takes too long."""
        end = time.monotonic() + 10
        while not (value := self.run(script, *arguments)) and time.monotonic() < end:
            time.sleep(0.02)
        return value
