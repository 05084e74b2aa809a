#!/usr/bin/python
# SPDX-License-Identifier: MIT
"""Runs the office assistant's doctor in the graphical sessions of a host."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r'''
---
module: doctor
short_description: Look at office suites in graphical sessions, and repair what is wrong
version_added: 0.1.0
author:
  - Office Assistant (@officeassistant)
description:
  - Runs C(assistantctl doctor) in each graphical session that logind knows, as the session's
    user, with the session's own environment, display and message bus. It has to be run as root.
  - Each session gets one of the classes C(ok), C(finding), C(check_failed), C(locked),
    C(no_environment), C(timed_out), C(refused), C(other_version) and C(failed). A host without a
    graphical session has the class C(no_session), one without the package C(not_installed).
requirements:
  - Python 3.9 or later on the host
options:
  state:
    description:
      - C(checked) looks and changes nothing. C(fixed) makes the repairs of O(checks). C(undone)
        takes the repair O(journal) of O(user) back.
    type: str
    choices: [checked, fixed, undone]
    default: checked
  checks:
    description:
      - Ids of the checks to run. Without any C(checked) runs all; C(fixed) needs them.
    type: list
    elements: str
    default: []
  repair:
    description:
      - The id of the repair to take, where a check has several.
    type: str
  journal:
    description:
      - The number of the repair to take back.
    type: int
  user:
    description:
      - Only the sessions of this user.
    type: str
  locked:
    description:
      - What to do with a session whose screen is locked. C(skip) leaves it alone and gives it
        the class
        C(locked), C(use) treats it like the others.
    type: str
    choices: [skip, use]
    default: skip
  limit:
    description:
      - Seconds that the doctor may take in one session.
    type: int
    default: 60
  host_limit:
    description:
      - Seconds for all sessions of the host. Those that are not reached get the class
        C(timed_out).
    type: int
    default: 300
  program:
    description:
      - The path of C(assistantctl), where it is not in C(/usr/bin).
    type: path
  results:
    description:
      - A directory of the controller. What is found is written there, to a file C(HOST.json) for
        each host, as soon as the host has answered, and only the class is kept in Ansible's
        memory. M(office_assistant.desktop.table) reads these files. A file stays until its host is
        asked again.
    type: path
attributes:
  check_mode:
    description: Gives the plan of the repairs as a diff, and writes nothing.
    support: full
  diff_mode:
    description: Shows what repairs change in files.
    support: full
'''

EXAMPLES = r'''
- name: Look at all sessions
  office_assistant.desktop.doctor:

- name: Look at all sessions of many desktops
  office_assistant.desktop.doctor:
    results: results

- name: Remove stale locks of the profile
  office_assistant.desktop.doctor:
    state: fixed
    checks: [libreoffice.profile-lock]

- name: Take the third repair of one user back
  office_assistant.desktop.doctor:
    state: undone
    user: ann
    journal: 3
'''

RETURN = r'''
class:
  description: The worst class of the host's sessions.
  returned: always
  type: str
  sample: finding
sessions:
  description: What the doctor said in each session.
  returned: without O(results)
  type: list
  elements: dict
  contains:
    user:
      description: The session's user.
      type: str
    session:
      description: Its number for logind.
      type: str
    class:
      description: How it ended.
      type: str
    text:
      description: Why, where that is not plain.
      type: str
    findings:
      description: The doctor's lines of the type C(finding).
      type: list
      elements: dict
    repairs:
      description: Its lines of the types C(repair) and C(undone).
      type: list
      elements: dict
    failed:
      description: The checks that failed, with the reason.
      type: list
      elements: dict
'''

import time  # noqa: E402

from ansible_collections.office_assistant.desktop.plugins.module_utils import queries  # noqa: E402

# logind answers while all else is read.
ASKED = queries.Queries() if __name__ == '__main__' else None

from ansible.module_utils.basic import AnsibleModule  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import checkups  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import logind  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import programs  # noqa: E402


def main():
    module = AnsibleModule(
        argument_spec={
            'state': {'type': 'str', 'choices': ['checked', 'fixed', 'undone'],
                      'default': 'checked'},
            'checks': {'type': 'list', 'elements': 'str', 'default': []},
            'repair': {'type': 'str'},
            'journal': {'type': 'int'},
            'user': {'type': 'str'},
            'locked': {'type': 'str', 'choices': ['skip', 'use'], 'default': 'skip'},
            'limit': {'type': 'int', 'default': 60},
            'host_limit': {'type': 'int', 'default': 300},
            'program': {'type': 'path'},
            # For the part of this module on the controller.
            'results': {'type': 'path'},
        },
        required_if=[('state', 'fixed', ('checks',)), ('state', 'undone', ('journal', 'user'))],
        supports_check_mode=True,
    )
    parameters = module.params
    path = programs.program(parameters['program'])
    if path is None:
        module.exit_json(changed=False, sessions=[], **{'class': 'not_installed'})
    try:
        found = [session for session in logind.graphical_sessions(ASKED)
                 if parameters['user'] in (None, session.user)]
    except queries.Unanswered as problem:
        module.fail_json(msg='logind does not answer: %s' % problem, sessions=[],
                         **{'class': 'failed'})
    if module.check_mode and parameters['state'] == 'undone':
        module.exit_json(changed=bool(found), sessions=[], **{'class': 'ok'})
    end = time.monotonic() + parameters['host_limit']
    looks = []
    for session in found:
        left = min(parameters['limit'], max(0, int(end - time.monotonic())))
        looks.append(checkups.look(session, parameters, module.check_mode, path, left))
    results = [result for result, _diff in looks]
    classes = [result['class'] for result in results] or ['no_session']
    module.exit_json(
        changed=any(result['changed'] for result in results),
        sessions=results,
        diff=[diff for _result, diff in looks if diff.get('prepared')],
        **{'class': min(classes, key=checkups.CLASSES.index)}
    )


if __name__ == '__main__':
    main()
