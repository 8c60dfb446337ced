"""How long a test waits for what comes at once on an idle machine."""

PATIENCE_SECONDS = 60    # a busy machine may need that long; what is late by more is missing
