# SPDX-License-Identifier: MIT
"""The part of the module "doctor" that runs on the controller: it keeps whole results in files."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os

from ansible.errors import AnsibleConnectionFailure
from ansible.plugins.action import ActionBase
from ansible_collections.office_assistant.desktop.plugins.module_utils.results import file_of, here

KEPT = ('class', 'changed', 'failed', 'msg', 'diff', 'invocation', 'warnings', 'exception')


def _write(path, host, result):
    """A line of JSON. Who reads it never sees a part."""
    os.makedirs(os.path.dirname(path), mode=0o700, exist_ok=True)
    part = path + '.part'
    with open(os.open(part, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), 'w') as stream:
        stream.write(json.dumps(dict(result, host=host)) + '\n')
    os.replace(part, path)


class ActionModule(ActionBase):
    """Asks the module; with "results", only how it ended goes on to Ansible's memory."""

    def run(self, tmp=None, task_vars=None):
        result = super(ActionModule, self).run(tmp, task_vars)
        results = self._task.args.get('results')
        host = task_vars['inventory_hostname']
        path = results and file_of(here(results), host)
        if path and os.path.exists(path):
            os.remove(path)
        try:
            result.update(self._execute_module(task_vars=task_vars))
        except AnsibleConnectionFailure as problem:
            if path:
                _write(path, host, {'unreachable': True, 'msg': str(problem)})
            raise
        if not path:
            return result
        _write(path, host, result)
        return dict((name, value) for name, value in result.items() if name in KEPT)
