#!/usr/bin/python
# SPDX-License-Identifier: MIT
"""The documentation of the action that writes the table of many hosts' results."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r'''
---
module: table
short_description: Write the doctor's results of many hosts as one table
version_added: 0.1.0
author:
  - Office Assistant (@officeassistant)
description:
  - Reads what M(office_assistant.desktop.doctor) has left in the directory O(results), and writes
    one table, the worst first. It runs on the controller, and takes little memory for thousands of
    hosts.
options:
  results:
    description:
      - The directory of the results.
    type: path
    required: true
  hosts:
    description:
      - Names of the hosts. One without a result is shown as such.
    type: list
    elements: str
    required: true
  dest:
    description:
      - The file to write.
    type: path
    required: true
  form:
    description:
      - What to write. Without it the end of O(dest) tells, and C(html) is written where it does
        not.
    type: str
    choices: [html, csv, json]
attributes:
  check_mode:
    description: Writes nothing.
    support: full
'''

EXAMPLES = r'''
- name: Write the page
  office_assistant.desktop.table:
    results: results
    hosts: "{{ groups.desktops }}"
    dest: doctor.html
'''

RETURN = r'''
dest:
  description: The file.
  returned: always
  type: str
'''
