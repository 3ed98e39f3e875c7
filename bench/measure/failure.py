class Failure(Exception):
    """What was to be measured did not happen; the text says so to the user."""
