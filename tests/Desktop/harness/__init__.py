"""Runs the desktop program in a session of its own; looks at it and touches it as a user would."""
