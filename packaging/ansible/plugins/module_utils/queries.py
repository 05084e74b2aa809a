# SPDX-License-Identifier: MIT
"""What logind is asked about the sessions of a host."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import subprocess

LOGIND = 'org.freedesktop.login1'
MANAGER = '/org/freedesktop/login1'
SESSIONS = '/run/systemd/sessions'
LIMIT = 10


class Unanswered(Exception):
    """logind did not say what it was asked."""


class Query(object):
    """A call of logind under way."""

    def __init__(self, path, *words):
        command = ['busctl', '--json=short', '--timeout=%d' % LIMIT, '--system', 'call',
                   LOGIND, path]
        self._fault = ''
        try:
            self._asked = subprocess.Popen(command + list(words), stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE)
        except OSError as error:
            self._fault = 'busctl: %s' % error

    def answer(self):
        """Waits for what it gives back."""
        if self._fault:
            raise Unanswered(self._fault)
        output, errors = self._asked.communicate()
        if self._asked.returncode != 0:
            raise Unanswered(errors.decode('utf-8', 'replace').strip()[:500])
        try:
            return json.loads(output.decode('utf-8'))['data'][0]
        except (ValueError, KeyError, IndexError, TypeError) as error:
            raise Unanswered('busctl: %s' % error)


def _properties(path):
    return Query(path, 'org.freedesktop.DBus.Properties', 'GetAll', 's',
                 'org.freedesktop.login1.Session')


def _path_of(number):
    """Where logind has the session, as sd_bus_path_encode(3) spells it."""
    first = '_%02x' % ord(number[0]) if number[0].isdigit() else number[0]
    return '%s/session/%s%s' % (MANAGER, first, number[1:])


def _is_there(number):
    return os.path.isfile(os.path.join(SESSIONS, number))


def _numbers():
    """Of all sessions, where sd_get_sessions(3) finds them."""
    try:
        names = os.listdir(SESSIONS)
    except OSError:
        return []
    return [name for name in names if _is_there(name)]


class Queries(object):
    """Asks logind for all sessions of this host, while others go on."""

    def __init__(self):
        self._asked = [(number, _properties(_path_of(number))) for number in _numbers()]
        # Each query is a program. Without files, logind itself says whether there are none.
        self._listed = None if self._asked else Query(
            MANAGER, LOGIND + '.Manager', 'ListSessions')

    def answers(self):
        """The properties of each session."""
        asked = self._asked
        if self._listed:
            asked = [(one[0], _properties(one[4])) for one in self._listed.answer()]
        answers = []
        for number, query in asked:
            try:
                answers.append(query.answer())
            except Unanswered:
                # It may have ended by now.
                if self._listed or _is_there(number):
                    raise
        return answers
