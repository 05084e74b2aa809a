# SPDX-License-Identifier: MIT
"""Programs that are run in a session."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import pwd
import select
import signal
import subprocess
import sys
import time

MOST_OUTPUT = 8 * 1024 * 1024
LONGEST_TEXT = 2000
MOST_PARTS = 200
DEEPEST = 4
VERSION_LIMIT = 10
# The collection's own; galaxy.yml says the same.
VERSION = '0.1.0'
NOT_STARTED = (KeyError, OSError, subprocess.SubprocessError)
PROGRAMS = ('/usr/bin/assistantctl', '/usr/local/bin/assistantctl')


def program(wanted):
    """The path of assistantctl, or None where it is not installed."""
    candidates = [wanted] if wanted else PROGRAMS
    for path in candidates:
        if os.path.isfile(path) and os.access(path, os.X_OK):
            return path
    return None


class Run(object):
    """What a program said, or that it was ended by a limit of "time" or "size"."""

    def __init__(self, status, output, errors, ended):
        self.status = status
        self.output = output.decode('utf-8', 'replace')
        self.errors = errors
        self.ended = ended
        self.lines, self.spoilt = _objects(self.output)

    def of_type(self, *kinds):
        return [line for line in self.lines if line.get('type') in kinds]


def _read(started, limit):
    """Reads until the end, the limit of time or the limit of size; says why it ended early."""
    end = time.monotonic() + limit
    pipes = {started.stdout: bytearray(), started.stderr: bytearray()}
    waiting = list(pipes)
    while waiting:
        left = end - time.monotonic()
        if left <= 0:
            return pipes, 'time'
        for stream in select.select(waiting, [], [], left)[0]:
            part = os.read(stream.fileno(), 65536)
            pipes[stream] += part
            if not part:
                waiting.remove(stream)
            if len(pipes[stream]) > MOST_OUTPUT:
                return pipes, 'size'
    return pipes, ''


def bounded(value, text=LONGEST_TEXT, parts=MOST_PARTS, depth=DEEPEST):
    """The value with long texts, long lists and deep parts cut: one host must not fill the
    controller's memory."""
    if isinstance(value, str):
        return value[:text]
    if isinstance(value, float) and value - value != 0:
        # Infinite, or not a number.
        return None
    if not isinstance(value, (dict, list)):
        return value
    if depth == 0:
        return None
    if isinstance(value, list):
        return [bounded(one, text, parts, depth - 1) for one in value[:parts]]
    return dict((name[:text], bounded(value[name], text, parts, depth - 1))
                for name in list(value)[:parts])


def _objects(output):
    """The JSON objects of the lines, and how many lines are something else."""
    objects = []
    spoilt = 0
    for line in output.split('\n'):
        try:
            parsed = json.loads(line) if line else None
        except (ValueError, RecursionError):
            parsed = ''
        if isinstance(parsed, dict):
            objects.append(parsed)
        elif line:
            spoilt += 1
    return objects, spoilt


def run_in(session, words, limit):
    """Runs a program as the session's user, with its environment, for at most limit seconds."""
    if sys.version_info < (3, 9):
        raise subprocess.SubprocessError('Python 3.9 or later is needed')
    account = pwd.getpwuid(session.uid)
    environment = dict(session.environment)
    environment.update(HOME=account.pw_dir, USER=account.pw_name, LOGNAME=account.pw_name)
    # No setpriv: it would run as root with the user's own LD_PRELOAD.
    started = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, cwd='/', env=environment, close_fds=True,
                               user=account.pw_uid, group=account.pw_gid, umask=0o077,
                               extra_groups=os.getgrouplist(account.pw_name, account.pw_gid),
                               start_new_session=True)
    try:
        pipes, ended = _read(started, limit)
    finally:
        # Also what it has started, and what holds the pipes open.
        try:
            os.killpg(started.pid, signal.SIGKILL)
        except OSError:
            pass
        status = started.wait()
        started.stdout.close()
        started.stderr.close()
    errors = bytes(pipes[started.stderr][:LONGEST_TEXT]).decode('utf-8', 'replace').strip()
    # What is cut off by the limit of size is not worth reading.
    output = b'' if ended == 'size' else bytes(pipes[started.stdout])
    return Run(status, output, errors, ended)


def _version_of(session, path):
    """What the program says of itself, such as "0.1.0"; empty if it does not."""
    run = run_in(session, [path, '--version'], VERSION_LIMIT)
    words = run.output[:LONGEST_TEXT].split()
    return words[-1] if run.status == 0 and words else ''


def why_not(session, path, run, limit, fault=''):
    """The class of a run without a usable answer, and the reason in words."""
    if run.ended == 'time':
        return 'timed_out', 'it took longer than %d s' % limit
    if run.ended == 'size':
        return 'failed', 'it wrote too much'
    said = fault or run.errors or 'its answer is cut or is not the expected JSON'
    version = _version_of(session, path)
    if version in ('', VERSION):
        return 'failed', said
    return 'other_version', 'assistantctl is %s, the collection %s: %s' % (version, VERSION, said)
