"""A logind on a system bus of a test's own."""
import os

PROGRAM = '/lib/systemd/systemd-logind'

# The real one, which writes into /run/systemd: into one of its own.
REAL = ['unshare', '--mount', '--propagation', 'private', 'sh', '-c',
        'mkdir -p /run/systemd; mount -t tmpfs none /run/systemd || exit 77; cd /run/systemd;'
        ' mkdir seats users sessions inhibit shutdown machines; exec ' + PROGRAM]

# One of which only the locks are true. It writes a line for each call.
MOCK = ['/usr/bin/python3', '-m', 'dbusmock', '--system', '--template', 'logind']


def why_no_real_one():
    """Why it cannot even be tried here; None if it can."""
    if os.geteuid() != 0 or not os.access(PROGRAM, os.X_OK):
        return 'only root can run systemd-logind, where it is installed'
    return None
