# SPDX-License-Identifier: MIT
"""Results of the doctor on many hosts as one table."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import csv
import html
import io
import json

from ansible.errors import AnsibleFilterError

STATES = {'bad': 0, 'warning': 1, 'note': 2}
CLASSES = ('unreachable', 'failed', 'timed_out', 'refused', 'no_environment', 'check_failed',
           'finding', 'locked', 'not_installed', 'no_session', 'ok')
COLUMNS = ('host', 'user', 'class', 'state', 'check', 'text')
LONGEST_TEXT = 2000
MOST_FINDINGS = 10000


def _text(value):
    """One line without control characters."""
    text = value if isinstance(value, str) else '' if value is None else str(value)
    return ''.join(each if each.isprintable() else ' ' for each in text[:LONGEST_TEXT]).strip()


def _class(result):
    """The class of a host's result; what is none of ours is a failure."""
    if result.get('unreachable'):
        return 'unreachable'
    named = result.get('class')
    return named if named in CLASSES else 'failed'


def _dicts(value):
    return [one for one in value if isinstance(one, dict)] if isinstance(value, list) else []


def _row(host, user, named, state='', check='', text=''):
    return dict(zip(COLUMNS, (_text(host), _text(user), named, state, _text(check), _text(text))))


def _rows_of_session(host, session):
    named = _class(session)
    user = session.get('user')
    rows = [_row(host, user, named, _state(finding), finding.get('check'), finding.get('text'))
            for finding in _dicts(session.get('findings'))[:MOST_FINDINGS]]
    rows += [_row(host, user, named, '', failed.get('check'), failed.get('reason'))
             for failed in _dicts(session.get('failed'))[:MOST_FINDINGS]]
    return rows or [_row(host, user, named, text=session.get('text'))]


def _state(finding):
    state = finding.get('state')
    return state if state in STATES else 'warning'


def rows_of(host, result):
    """All rows of one host: its findings, or why there are none."""
    if not isinstance(result, dict):
        return [_row(host, '', 'failed', text='there is no result')]
    rows = [row for session in _dicts(result.get('sessions'))
            for row in _rows_of_session(host, session)]
    return rows or [_row(host, '', _class(result), text=result.get('msg'))]


def _rank(row):
    return CLASSES.index(row['class']), STATES.get(row['state'], len(STATES)), row['check']


def grouped(rows):
    """Equal findings together, the worst and most frequent first."""
    groups = {}
    for row in rows:
        key = (row['class'], row['state'], row['check'], '' if row['check'] else row['text'])
        group = groups.setdefault(key, {'class': row['class'], 'state': row['state'],
                                        'check': row['check'], 'text': row['text'], 'hosts': []})
        if row['host'] not in group['hosts']:
            group['hosts'].append(row['host'])
    return sorted(groups.values(), key=lambda group: (_rank(group)[:2], -len(group['hosts']),
                                                      group['check']))


def _cell(text):
    """Programs that open CSV take these beginnings for a formula."""
    return "'" + text if text[:1] in ('=', '+', '-', '@') else text


def as_csv(rows):
    stream = io.StringIO()
    writer = csv.writer(stream, lineterminator='\n')
    writer.writerow(COLUMNS)
    writer.writerows([_cell(row[column]) for column in COLUMNS] for row in rows)
    return stream.getvalue()


PAGE = '''<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy"
 content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>Office Assistant: many desktops</title>
<style>
body { font: 15px/1.5 sans-serif; margin: 2rem auto; max-width: 75rem; padding: 0 1rem; }
table { border-collapse: collapse; width: 100%%; }
th, td { border-bottom: 1px solid #ccc; padding: .3rem .6rem; text-align: left; }
td { vertical-align: top; }
.bar { background: #777; height: .8rem; } .bad .bar { background: #b3261e; }
.warning .bar { background: #8a5a00; } input { font: inherit; width: 20rem; }
</style>
<h1>Office Assistant: %(hosts)d desktops</h1>
<h2>What was found</h2>
<table><thead><tr><th>Hosts<th>How many<th>Class<th>State<th>Check<th>Text</thead><tbody>
%(groups)s</tbody></table>
<h2>Each desktop</h2>
<p><label>Filter: <input id="filter" autocomplete="off"></label></p>
<table id="rows"><thead><tr><th>Host<th>User<th>Class<th>State<th>Check<th>Text</thead><tbody>
%(rows)s</tbody></table>
<script>
document.getElementById('filter').addEventListener('input', (event) => {
    const wanted = event.target.value.toLowerCase();
    for (const row of document.querySelectorAll('#rows tbody tr'))
        row.hidden = !row.textContent.toLowerCase().includes(wanted);
});
</script>
'''
MOST_NAMED = 20


def _group_row(group, count):
    hosts = group['hosts']
    named = ', '.join(hosts[:MOST_NAMED])
    if len(hosts) > MOST_NAMED:
        named += ' and %d more' % (len(hosts) - MOST_NAMED)
    share = 100.0 * len(hosts) / max(count, 1)
    cells = [html.escape(group[name]) for name in ('class', 'state', 'check', 'text')]
    return ('<tr class="%s"><td><div class="bar" style="width:%.1f%%"></div>%s<td>%d<td>%s\n'
            % (html.escape(group['state']), share, html.escape(named), len(hosts),
               '<td>'.join(cells)))


def as_html(rows, count):
    lines = ['<tr><td>%s\n' % '<td>'.join(html.escape(row[column]) for column in COLUMNS)
             for row in rows]
    return PAGE % {'hosts': count, 'rows': ''.join(lines),
                   'groups': ''.join(_group_row(group, count) for group in grouped(rows))}


def doctor_table(variables, hosts, form='csv', register='doctor'):
    rows = []
    for host in hosts:
        known = variables[host] if host in variables else {}
        rows += rows_of(host, known.get(register))
    rows.sort(key=_rank)
    if form == 'csv':
        return as_csv(rows)
    if form == 'json':
        return json.dumps({'groups': grouped(rows), 'rows': rows}, ensure_ascii=False)
    if form == 'html':
        return as_html(rows, len(hosts))
    raise AnsibleFilterError('doctor_table: form must be csv, json or html, not %s' % form)


class FilterModule(object):
    """What Ansible asks for filters."""

    def filters(self):
        return {'doctor_table': doctor_table}
