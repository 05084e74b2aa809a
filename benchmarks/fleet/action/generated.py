"""The module "doctor" without a host: each has as many findings as the variable "findings" says."""

import random

from ansible_collections.office_assistant.desktop.plugins.action import doctor


class ActionModule(doctor.ActionModule):
    """What the controller does with a host's answer is the collection's own."""

    def _execute_module(self, task_vars=None, **_others):
        number = int(task_vars['inventory_hostname'][4:])
        chance = random.Random(number)
        return {'class': 'finding', 'changed': False, 'sessions': [{
            'user': 'ann', 'uid': 1000, 'session': '1', 'type': 'x11', 'class': 'finding',
            'text': '', 'changed': False, 'repairs': [], 'failed': [], 'findings': [{
                'type': 'finding', 'check': 'check.%d' % chance.randrange(300), 'state': 'warning',
                'text': '/home/user%d/.config/file%d has grown to %d MiB: starting takes long.'
                        % (number, finding, chance.randrange(100)),
                'where': [{'path': '/home/user%d/.config/file%d' % (number, finding)}],
                'values': {'size': '%d MiB' % finding}, 'repairs': ['reset']}
                for finding in range(task_vars['findings'])]}]}
