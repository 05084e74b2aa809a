# SPDX-License-Identifier: MIT
"""Results of hosts in a directory of the controller, a file each."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os

try:
    from urllib.parse import quote
except ImportError:
    from urllib import quote


def here(path):
    """Relative to where Ansible was started; it has gone to the directory of the play since."""
    return os.path.join(os.environ.get('PWD', ''), os.path.expanduser(path))


def file_of(directory, host):
    """The host's file; no name leads out of the directory."""
    return os.path.join(directory, quote(host, safe='') + '.json')


class Results(object):
    """The results by host, each read when it is asked for."""

    def __init__(self, directory):
        self.directory = directory

    def __contains__(self, host):
        return os.path.exists(file_of(self.directory, host))

    def __getitem__(self, host):
        try:
            with open(file_of(self.directory, host)) as stream:
                return json.load(stream)
        except (ValueError, RecursionError, OSError) as problem:
            return {'class': 'failed', 'msg': 'its file cannot be read: %s' % problem}
