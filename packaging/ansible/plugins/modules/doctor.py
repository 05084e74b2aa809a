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
    user, with the
    session's own environment, display and message bus. It has to be run as root.
  - Each session gets one of the classes C(ok), C(finding), C(check_failed), C(locked),
    C(no_environment),
    C(timed_out), C(refused) and C(failed). A host without a graphical session has the class
    C(no_session), one
    without the package C(not_installed).
options:
  state:
    description:
      - C(checked) looks and changes nothing. C(fixed) makes the repairs of O(checks). C(undone)
        takes the
        repair O(journal) of O(user) back.
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
  returned: always
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

from ansible.module_utils.basic import AnsibleModule  # noqa: E402
from ansible_collections.office_assistant.desktop.plugins.module_utils import sessions  # noqa: E402

# The worst first.
CLASSES = ('failed', 'timed_out', 'refused', 'no_environment', 'check_failed', 'finding', 'locked',
           'not_installed', 'no_session', 'ok')
MOST_FINDINGS = 10000
LONGEST_TEXT = 2000


def words_for(parameters, check_mode, path):
    words = [path, 'doctor']
    if parameters['state'] == 'undone':
        return words + ['undo', str(parameters['journal']), '--json']
    if parameters['state'] == 'fixed':
        words += ['fix', '--yes']
        if check_mode:
            words.append('--dry-run')
        if parameters['repair']:
            words += ['--repair', parameters['repair']]
    return words + ['--json', '--'] + parameters['checks']


def short(line):
    """The line with its texts cut: one host must not fill the controller's memory."""
    return dict((name, value[:LONGEST_TEXT] if isinstance(value, str) else value)
                for name, value in line.items())


def lines_of(run, *kinds):
    return [short(line) for line in run.lines if line.get('type') in kinds][:MOST_FINDINGS]


def class_of(run, result):
    if run.ended:
        return 'timed_out' if run.ended == 'time' else 'failed'
    if run.status not in (0, 1, 3) or not run.lines:
        return 'failed'
    done = [line.get('result') for line in result['repairs']]
    if 'failed' in done:
        return 'failed'
    if 'refused' in done:
        return 'refused'
    if result['failed'] or run.status == 3:
        return 'check_failed'
    return 'finding' if result['findings'] else 'ok'


def diff_of(run):
    parts = [line.get('diff') or '%s %s\n' % (line.get('kind'), line.get('path'))
             for line in run.lines if line.get('type') == 'change']
    return {'prepared': ''.join(parts)[:1000000]}


def look(session, parameters, check_mode, path, limit):
    result = session.described()
    result.update(findings=[], repairs=[], failed=[], changed=False, text='')
    if session.locked and parameters['locked'] == 'skip':
        result['class'] = 'locked'
        return result, {}
    if session.environment is None:
        result['class'] = 'no_environment'
        result['text'] = 'no process of the session has a display'
        return result, {}
    run = sessions.run_in(session, words_for(parameters, check_mode, path), limit)
    result['findings'] = lines_of(run, 'finding')
    result['repairs'] = lines_of(run, 'repair', 'undone')
    result['failed'] = [line for line in lines_of(run, 'check') if line.get('result') == 'failed']
    changing = ('planned',) if check_mode else ('repaired', 'undone')
    result['changed'] = any(line.get('result') in changing for line in result['repairs'])
    result['class'] = class_of(run, result)
    if result['class'] in ('failed', 'timed_out'):
        result['text'] = {'time': 'it took longer than %d s' % limit,
                          'size': 'it wrote too much'}.get(run.ended, run.errors)
    return result, diff_of(run)


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
        },
        required_if=[('state', 'fixed', ('checks',)), ('state', 'undone', ('journal', 'user'))],
        supports_check_mode=True,
    )
    parameters = module.params
    path = sessions.program(parameters['program'])
    if path is None:
        module.exit_json(changed=False, sessions=[], **{'class': 'not_installed'})
    try:
        found = sessions.graphical_sessions()
    except sessions.Unanswered as problem:
        module.fail_json(msg='logind does not answer: %s' % problem, sessions=[],
                         **{'class': 'failed'})
    if parameters['user']:
        found = [session for session in found if session.user == parameters['user']]
    if module.check_mode and parameters['state'] == 'undone':
        module.exit_json(changed=bool(found), sessions=[], **{'class': 'ok'})
    end = time.monotonic() + parameters['host_limit']
    results = []
    diffs = []
    for session in found:
        left = min(parameters['limit'], max(0, int(end - time.monotonic())))
        result, diff = look(session, parameters, module.check_mode, path, left)
        results.append(result)
        diffs.append(diff)
    classes = [result['class'] for result in results] or ['no_session']
    module.exit_json(
        changed=any(result['changed'] for result in results),
        sessions=results,
        diff=[diff for diff in diffs if diff.get('prepared')],
        **{'class': min(classes, key=CLASSES.index)}
    )


if __name__ == '__main__':
    main()
