# SPDX-License-Identifier: MIT
"""What the doctor says in a session."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json

from ansible_collections.office_assistant.desktop.plugins.module_utils import programs

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
    return [programs.bounded(line) for line in run.of_type(*kinds)[:MOST_FINDINGS]]


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
        run = programs.run_in(session, words_for(parameters, check_mode, path), limit)
    except programs.NOT_STARTED as problem:
        result.update({'class': 'failed', 'text': str(problem)})
        return result, {}
    result['findings'] = lines_of(run, 'finding')
    result['repairs'] = lines_of(run, 'repair', 'undone')
    result['failed'] = [line for line in lines_of(run, 'check') if line.get('result') == 'failed']
    changing = ('planned',) if check_mode else ('repaired', 'undone')
    result['changed'] = any(line.get('result') in changing for line in result['repairs'])
    fault = fault_of(run)
    if fault or not is_whole(run):
        result['class'], result['text'] = programs.why_not(session, path, run, limit, fault)
    else:
        result['class'] = class_of(run, result)
        if run.spoilt:
            result['text'] = '%d lines of its answer are not JSON' % run.spoilt
    return result, diff_of(run)
