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

import json  # noqa: E402
import time  # noqa: E402

from ansible_collections.office_assistant.desktop.plugins.module_utils import sessions  # noqa: E402

# logind answers while Ansible's own parts are read and the parameters are looked at.
ASKED = sessions.GraphicalSessions() if __name__ == '__main__' else None

from ansible.module_utils.basic import AnsibleModule  # noqa: E402

# The worst first.
CLASSES = ('failed', 'timed_out', 'other_version', 'refused', 'no_environment', 'check_failed',
           'finding', 'locked', 'not_installed', 'no_session', 'ok')
MOST_FINDINGS = 10000
# What lines of these types can end with.
RESULTS = {
    'check': ('ok', 'finding', 'failed', 'skipped'),
    'repair': ('repaired', 'unchanged', 'refused', 'failed', 'planned'),
    'undone': ('undone', 'conflict', 'failed'),
}


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


def lines_of(run, *kinds):
    return [sessions.bounded(line) for line in run.of_type(*kinds)[:MOST_FINDINGS]]


def fault_of(run):
    """What of the answer another version of the program must have written, or nothing."""
    for line in run.of_type(*RESULTS):
        if line.get('result') not in RESULTS[line['type']]:
            return 'the result %s of a %s is not known' % (
                json.dumps(line.get('result'))[:80], line['type'])
    return ''


def is_whole(run):
    # A look and a repair end with a summary.
    return not run.ended and run.status in (0, 1, 3) and bool(run.of_type('summary', 'undone'))


def class_of(run, result):
    done = [line.get('result') for line in result['repairs']]
    if 'failed' in done:
        return 'failed'
    if 'refused' in done or 'conflict' in done:
        return 'refused'
    if result['failed'] or run.status == 3:
        return 'check_failed'
    return 'finding' if result['findings'] else 'ok'


def diff_of(run):
    parts = [str(line.get('diff') or '%s %s\n' % (line.get('kind'), line.get('path')))
             for line in run.of_type('change')]
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
    try:
        run = sessions.run_in(session, words_for(parameters, check_mode, path), limit)
    except sessions.NOT_STARTED as problem:
        result.update({'class': 'failed', 'text': str(problem)})
        return result, {}
    result['findings'] = lines_of(run, 'finding')
    result['repairs'] = lines_of(run, 'repair', 'undone')
    result['failed'] = [line for line in lines_of(run, 'check') if line.get('result') == 'failed']
    changing = ('planned',) if check_mode else ('repaired', 'undone')
    result['changed'] = any(line.get('result') in changing for line in result['repairs'])
    fault = fault_of(run)
    if fault or not is_whole(run):
        result['class'], result['text'] = sessions.why_not(session, path, run, limit, fault)
    else:
        result['class'] = class_of(run, result)
        if run.spoilt:
            result['text'] = '%d lines of its answer are not JSON' % run.spoilt
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
            # For the part of this module on the controller.
            'results': {'type': 'path'},
        },
        required_if=[('state', 'fixed', ('checks',)), ('state', 'undone', ('journal', 'user'))],
        supports_check_mode=True,
    )
    parameters = module.params
    path = sessions.program(parameters['program'])
    if path is None:
        module.exit_json(changed=False, sessions=[], **{'class': 'not_installed'})
    try:
        found = ASKED.found()
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
