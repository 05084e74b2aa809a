#!/usr/bin/python
# SPDX-License-Identifier: MIT
"""Reports of the graphical sessions of a host."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r'''
---
module: report
short_description: Describe machine, session and office suite, to be compared
version_added: 0.1.0
author:
  - Office Assistant (@officeassistant)
description:
  - Runs C(assistantctl report) in each graphical session, as its user. Values of passwords,
    tokens and keys are
    left out. C(assistantctl compare) says what differs between the reports. It has to be run as
    root.
requirements:
  - Python 3.9 or later on the host
options:
  user:
    description:
      - Only the sessions of this user.
    type: str
  limit:
    description:
      - Seconds that a report may take.
    type: int
    default: 60
  program:
    description:
      - The path of C(assistantctl), where it is not in C(/usr/bin).
    type: path
attributes:
  check_mode:
    description: The module never changes anything.
    support: full
'''

EXAMPLES = r'''
- name: Describe the sessions
  office_assistant.desktop.report:
  register: described

- name: Keep each as a file that assistantctl compare reads
  ansible.builtin.copy:
    content: "{{ item.report | to_json }}"
    dest: "reports/{{ inventory_hostname }}-{{ item.user }}.json"
    mode: '0600'
  loop: "{{ described.reports }}"
  delegate_to: localhost
'''

RETURN = r'''
reports:
  description: One for each session.
  returned: always
  type: list
  elements: dict
  contains:
    user:
      description: The session's user.
      type: str
    report:
      description: As docs/report.schema.json says; empty if there is none.
      type: dict
    text:
      description: Why there is none.
      type: str
'''

from ansible.module_utils.basic import AnsibleModule  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import logind  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import programs  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import queries  # noqa: E402


def describe(session, path, limit):
    result = session.described()
    result.update(report={}, text='')
    if session.environment is None:
        result['text'] = 'no process of the session has a display'
        return result
    try:
        run = programs.run_in(session, [path, 'report'], limit)
    except programs.NOT_STARTED as problem:
        result['text'] = str(problem)
        return result
    reports = run.of_type('report')
    if reports and not run.ended and run.status == 0:
        # As much of it as assistantctl compare reads.
        result['report'] = programs.bounded(reports[0], text=4096, parts=20000)
    else:
        result['text'] = programs.why_not(session, path, run, limit)[1]
    return result


def main():
    module = AnsibleModule(
        argument_spec={
            'user': {'type': 'str'},
            'limit': {'type': 'int', 'default': 60},
            'program': {'type': 'path'},
        },
        supports_check_mode=True,
    )
    path = programs.program(module.params['program'])
    if path is None:
        module.fail_json(msg='assistantctl is not installed', reports=[])
    wanted = module.params['user']
    try:
        found = [session for session in logind.graphical_sessions(queries.Queries())
                 if wanted in (None, session.user)]
    except queries.Unanswered as problem:
        module.fail_json(msg='logind does not answer: %s' % problem, reports=[])
    reports = [describe(session, path, module.params['limit'])
               for session in found]
    module.exit_json(changed=False, reports=reports)


if __name__ == '__main__':
    main()
