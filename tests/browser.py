"""A headless Chromium, driven by the WebDriver protocol."""

import base64
import http.client
import json
import re
import shutil
import subprocess
import tempfile
import time

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"

ARGUMENTS = [
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--disable-dev-shm-usage", "--window-size=1400,900",
]

KEYS = {
    "Tab": "\ue004", "Enter": "\ue007", "Control": "\ue009", "Escape": "\ue00c",
    "PageUp": "\ue00e", "PageDown": "\ue00f", "End": "\ue010", "Home": "\ue011",
    "ArrowLeft": "\ue012", "ArrowUp": "\ue013", "ArrowRight": "\ue014", "ArrowDown": "\ue015",
}


class BrowserError(Exception):
    pass


class Browser:
    """Call `close` when done."""

    def __init__(self):
        programs = {name: shutil.which(name) for name in ("chromium", "chromedriver")}
        missing = [name for name, path in programs.items() if path is None]
        if missing:
            raise BrowserError(f"{' and '.join(missing)} not found: this test needs the packages "
                               "chromium and chromium-driver, which './run test' installs")
        self.folder = tempfile.mkdtemp(prefix="fabscan-browser-")
        self.driver = subprocess.Popen([programs["chromedriver"], "--port=0"], text=True,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.session = None
        try:
            for line in self.driver.stdout:
                found = re.search(r"started successfully on port (\d+)", line)
                if found:
                    break
            else:
                raise BrowserError("chromedriver does not start")
            self.port = int(found[1])
            answer = self.call("POST", "/session", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": {
                    "binary": programs["chromium"],
                    "args": [*ARGUMENTS, f"--user-data-dir={self.folder}"]},
                "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}}})
            self.session = f"/session/{answer['sessionId']}"
            self.post("/url", url="about:blank")
        except BaseException:
            self.close()
            raise

    def close(self):
        try:
            if self.session is not None:
                self.call("DELETE", self.session)
        finally:
            self.driver.terminate()
            self.driver.wait(30)
            self.driver.stdout.close()
            shutil.rmtree(self.folder, ignore_errors=True)

    def call(self, method, path, body=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        try:
            connection.request(method, path, None if body is None else json.dumps(body),
                               {"Content-Type": "application/json"})
            value = json.loads(connection.getresponse().read())["value"]
        finally:
            connection.close()
        if isinstance(value, dict) and "error" in value:
            raise BrowserError(f"{path}: {value['error']}: {value['message'].splitlines()[0]}")
        return value

    def post(self, path, **body):
        return self.call("POST", self.session + path, body)

    def open(self, path):
        self.logs()
        self.post("/url", url=f"file://{path}")

    def run(self, script, *arguments):
        """The value of an expression in the page; `arguments` are the other arguments."""
        return self.post("/execute/sync", script=f"return ({script});", args=list(arguments))

    def wait_for(self, script, *arguments):
        deadline = time.monotonic() + 20
        while not (value := self.run(script, *arguments)):
            if time.monotonic() > deadline:
                raise BrowserError(f"never true: {script}")
            time.sleep(0.02)
        return value

    def find(self, selector):
        return self.post("/element", using="css selector", value=selector)[ELEMENT]

    def click(self, selector):
        self.post(f"/element/{self.find(selector)}/click")

    def type_into(self, selector, text):
        element = self.find(selector)
        self.post(f"/element/{element}/clear")
        self.post(f"/element/{element}/value", text=text)

    def choose(self, selector, value):
        self.click(f"{selector} option[value='{value}']")

    def press(self, *keys, holding=()):
        """Presses keys by name, such as "Enter", wherever the focus is."""
        actions = [{"type": "keyDown", "value": KEYS[key]} for key in holding]
        for key in keys:
            actions += [{"type": kind, "value": KEYS.get(key, key)} for kind in ("keyDown", "keyUp")]
        actions += [{"type": "keyUp", "value": KEYS[key]} for key in holding]
        self.post("/actions", actions=[{"type": "key", "id": "keyboard", "actions": actions}])

    def prefer(self, scheme):
        """Emulates the preferred colour scheme "light" or "dark"."""
        self.post("/goog/cdp/execute", cmd="Emulation.setEmulatedMedia",
                  params={"features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def resize(self, width, height=900):
        """Sets the size of the page area, in pixels."""
        self.post("/goog/cdp/execute", cmd="Emulation.setDeviceMetricsOverride",
                  params={"width": width, "height": height, "deviceScaleFactor": 1,
                          "mobile": False})

    def logs(self):
        """Console messages and requested addresses since the last call.

        The browser's own pages are left out: its first one may still be loading.
        """
        console = self.post("/se/log", type="browser")
        network = [json.loads(entry["message"])["message"]
                   for entry in self.post("/se/log", type="performance")]
        return ([entry["message"] for entry in console],
                [event["params"]["request"]["url"] for event in network
                 if event["method"] == "Network.requestWillBeSent"
                 and not event["params"]["request"]["url"].startswith("chrome://")])

    def screenshot(self, path):
        path.write_bytes(base64.b64decode(self.call("GET", self.session + "/screenshot")))
