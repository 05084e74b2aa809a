# SPDX-License-Identifier: MIT
"""Writes the table of many hosts' results, on the controller and in parts."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import filecmp
import os

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase
from ansible_collections.office_assistant.desktop.plugins.filter.doctor_table import table_parts
from ansible_collections.office_assistant.desktop.plugins.module_utils.results import Results, here

FORMS = ['html', 'csv', 'json']


def form_of(path):
    """The form that the end of the name asks for."""
    end = os.path.splitext(path)[1][1:].lower()
    return end if end in FORMS else FORMS[0]


class ActionModule(ActionBase):
    """A table in a file."""

    _requires_connection = False

    def run(self, tmp=None, task_vars=None):
        result = super(ActionModule, self).run(tmp, task_vars)
        _given, asked = self.validate_argument_spec({
            'results': {'type': 'path', 'required': True},
            'hosts': {'type': 'list', 'elements': 'str', 'required': True},
            'dest': {'type': 'path', 'required': True},
            'form': {'type': 'str', 'choices': FORMS},
        })
        dest = here(asked['dest'])
        if self._task.check_mode:
            return dict(result, changed=True, dest=dest)
        part = dest + '.part'
        try:
            descriptor = os.open(part, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)
            with open(descriptor, 'w', encoding='utf-8') as stream:
                stream.writelines(
                    table_parts(Results(here(asked['results'])), asked['hosts'],
                                asked['form'] or form_of(dest)))
            changed = not (os.path.exists(dest)
                           and filecmp.cmp(part, dest, shallow=False))
            os.replace(part, dest)
        except OSError as problem:
            raise AnsibleActionFail('the table cannot be written: %s' % problem)
        return dict(result, changed=changed, dest=dest)
