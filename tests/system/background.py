"""What runs beside the tests: looking at services over minutes, while other tests have their turn."""
import threading


class Background(threading.Thread):
    """A subclass does its work in `work`; a test waits for it by `result`."""

    def __init__(self):
        super().__init__(daemon=True)
        self.failure = None

    def work(self):
        raise NotImplementedError

    def run(self):
        try:
            self.work()
        except Exception as failure:  # the tests tell it
            self.failure = failure

    def result(self):
        """This object when its work has ended; raises what the work raised."""
        self.join()
        if self.failure:
            raise self.failure
        return self
