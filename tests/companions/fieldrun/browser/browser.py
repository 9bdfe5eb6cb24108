"""A headless Chromium that is driven by its DevTools protocol, over a pair of pipes."""

import base64
import itertools
import json
import os
import shutil
import subprocess

NAME = "chromium"


def is_installed():
    return shutil.which(NAME) is not None


class Browser:
    """One browser with a profile of its own in `folder`, into which downloads go too."""

    def __init__(self, folder):
        self.folder = folder
        its_in, self._out = os.pipe()
        self._in, its_out = os.pipe()
        # The browser reads from 3 and writes to 4.
        command = f"exec {NAME} --headless --no-sandbox --disable-gpu --disable-dev-shm-usage " \
                  f"--remote-debugging-pipe --user-data-dir='{folder}' 3<&{its_in} 4>&{its_out}"
        self._process = subprocess.Popen(["bash", "-c", command], pass_fds=(its_in, its_out),
                                         stderr=subprocess.DEVNULL)
        os.close(its_in)
        os.close(its_out)
        self._numbers = itertools.count(1)
        self._read = b""
        self.events = []
        self.send("Browser.setDownloadBehavior", behavior="allow", downloadPath=folder,
                  eventsEnabled=True)

    def _next(self):
        while b"\0" not in self._read:
            more = os.read(self._in, 1 << 16)
            if not more:
                raise EOFError("the browser has ended")
            self._read += more
        message, self._read = self._read.split(b"\0", 1)
        return json.loads(message)

    def send(self, method, session=None, **parameters):
        number = next(self._numbers)
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        rest = json.dumps(message).encode() + b"\0"
        while rest:
            rest = rest[os.write(self._out, rest):]
        while True:
            answer = self._next()
            if answer.get("id") == number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def wait(self, method, matches=lambda parameters: True):
        """The parameters of the next such event, which it takes out of those that have come."""
        for seen in itertools.count():
            if seen == len(self.events):
                self.events.append(self._next())
            event = self.events[seen]
            if event.get("method") == method and matches(event["params"]):
                del self.events[seen]
                return event["params"]

    def close(self):
        self.send("Browser.close")
        self._process.wait()


class Page:
    """A page in a window of its own, which is ready when all of it stands."""

    def __init__(self, browser, path, width=1280, height=900):
        self.browser = browser
        target = browser.send("Target.createTarget", url="about:blank")["targetId"]
        self._session = browser.send("Target.attachToTarget", targetId=target,
                                     flatten=True)["sessionId"]
        for domain in "Page", "Runtime", "Log", "Network":
            self.send(f"{domain}.enable")
        self.resize(width, height)
        self.send("Page.navigate", url=f"file://{path}")
        browser.wait("Page.loadEventFired")
        self.await_ready()

    def send(self, method, **parameters):
        return self.browser.send(method, self._session, **parameters)

    def resize(self, width, height=900):
        self.send("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=False)

    def await_ready(self):
        self.until("document.body.classList.contains('ready')")

    def eval(self, script):
        answer = self.send("Runtime.evaluate", expression=script, awaitPromise=True,
                           returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(f"{script}: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def until(self, condition):
        """Waits, frame by frame, for something to become true of the page."""
        self.eval(f"new Promise((done) => {{ const look = () => ({condition}) ? done(true) : "
                  "requestAnimationFrame(look); look(); })")

    def drawn(self):
        """Lets what was changed be drawn."""
        self.eval("new Promise((done) => requestAnimationFrame(() => setTimeout(done)))")

    def set(self, selector, value):
        """Gives a control a value, as its user does."""
        self.eval(f"{{ const control = document.querySelector('{selector}'); "
                  f"control.value = {json.dumps(value)}; control.dispatchEvent(new Event('input')); }}")
        self.drawn()

    def press(self, key):
        self.send("Input.dispatchKeyEvent", type="keyDown", key=key, text=key if len(key) == 1 else "")
        self.drawn()

    def mouse(self, kind, x, y):
        self.send("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)
        self.drawn()

    def texts(self, selector):
        """The shown text of all elements that a selector finds, blanks of any kind as one."""
        return self.eval(f"[...document.querySelectorAll({json.dumps(selector)})]"
                         ".map((e) => e.textContent.replace(/[\\u202f]/g, '').trim())")

    def count(self, selector):
        return self.eval(f"document.querySelectorAll({json.dumps(selector)}).length")

    def download(self, click):
        """What a script's click hands out: the file's name and its bytes."""
        self.eval(click)
        name = self.browser.wait("Browser.downloadWillBegin")["suggestedFilename"]
        self.browser.wait("Browser.downloadProgress", lambda p: p["state"] == "completed")
        with open(os.path.join(self.browser.folder, name), "rb") as file:
            return name, file.read()

    def pdf(self):
        return base64.b64decode(self.send("Page.printToPDF", printBackground=True,
                                          preferCSSPageSize=True)["data"])

    def faults(self):
        """What the browser complains of, and what the page has asked of others than files."""
        faults = [event for event in self.browser.events if event.get("method") in
                  ("Runtime.exceptionThrown", "Log.entryAdded", "Runtime.consoleAPICalled")]
        return faults + [url for url in self._requests() if not url.startswith(("file:", "blob:"))]

    def _requests(self):
        return [event["params"]["request"]["url"] for event in self.browser.events
                if event.get("method") == "Network.requestWillBeSent"]
