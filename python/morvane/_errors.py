class Error(Exception):
    """What went wrong with a file or with data; ``str(error)`` says it, ``error.code`` names it for programs.

    Codes: ``"damaged"`` (the data breaks its format), ``"unsupported"`` (sound, but of a kind that is not handled),
    ``"other-kind"`` (not what the file's name says), ``"no-room"`` (the image has too few pixels), ``"too-large"``,
    ``"no-space"`` (the disk is full), ``"changed"`` (somebody else wrote the file meanwhile), ``"not-a-file"`` (a folder
    or a device), ``"not-found"``, ``"cannot-read"``, ``"cannot-write"``, ``"busy"`` (another thread is using the
    document), ``"stale"`` (a layer of before a change), ``"failed"`` (a command in a scene), ``"closed"`` (a scene).
    """

    def __init__(self, text, code):
        super().__init__(text)
        self.code = code
