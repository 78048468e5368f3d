"""Operates the program through the accessibility bus and the keyboard, by what a screen reader says: no mouse,
no places on the screen.   reader.py HOME, the folder from which the program in a window was started"""
import os
import re
import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

home = sys.argv[1]
PATIENCE = 120  # seconds; generous, because everything is slow on a busy machine
heard = []  # what got the focus, or was ticked or unticked, since the last expect_heard
GLib.timeout_add(10, lambda: True)  # so that a wait for an event ends, and the condition is looked at again


def until(condition, what):
    """Waits until the condition gives a true value, and returns that."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        GLib.MainContext.default().iteration(True)
        try:
            if found := condition():
                return found
        except GLib.Error:  # an object of a window that has closed
            pass
    sys.exit(f'Waited {PATIENCE} seconds for nothing: {what}; heard {heard}')


def has(part, state):
    return part.getState().contains(getattr(pyatspi, 'STATE_' + state))


def role(part):
    return part.getRoleName().replace('push button', 'button')  # its name before AT-SPI 2.56


def said(part):
    """The label that names a part, its own name, its role, its description and its state."""
    labels = [relation.getTarget(0).name for relation in part.getRelationSet()
              if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY]
    words = [*labels, part.name] if part.name not in labels else labels
    words = [*words, role(part), part.description if part.description != part.name else '']
    words += ['checked' if has(part, 'CHECKED') else '', '' if has(part, 'ENABLED') else 'disabled']
    return re.sub(r'Version: [0-9.]+', 'Version: V', ' '.join(filter(None, words)))


def parts(root):
    """What is shown in a window, without what only groups it."""
    for child in root:
        if child and has(child, 'SHOWING'):
            if child.getRoleName() not in ('filler', 'panel', 'menu bar', 'scroll bar'):
                yield child
            yield from parts(child)


def part(root, wanted, name):
    found = pyatspi.findDescendant(root, lambda p: role(p) == wanted and p.name == name)
    return found or sys.exit(f'{root.name} has no {wanted} {name}')


def do(action, *place):
    """Does an action of a part, given as such or by its window, role and name."""
    target = part(*place) if len(place) > 1 else place[0]
    actions = target.queryAction()
    actions.doAction([actions.getName(i) for i in range(actions.nActions)].index(action))


def fill_in(root, name, text):
    part(root, 'text', name).queryEditableText().setTextContents(text)


def window(title, *wanted):
    """Waits until the window is active, and checks all that it says, if that is given."""
    found = until(lambda: next((w for w in program if w and w.name.startswith(title) and has(w, 'ACTIVE')), None), title)
    assert not wanted or list(wanted) == [said(p) for p in parts(found)], [said(p) for p in parts(found)]
    return found


def press(*keys):
    subprocess.run(['xdotool', 'key', '--clearmodifiers', *keys], check=True)


def hear(event):
    try:
        if event.type.minor == 'checked':
            heard.append('changed: ' + said(event.source))
        elif event.detail1:
            heard.append(said(event.source))
    except GLib.Error:  # closed meanwhile
        pass


def expect_heard(text):
    until(lambda: text in heard, text)
    heard.clear()


pyatspi.Registry.registerEventListener(hear, 'object:state-changed:focused', 'object:state-changed:checked')
program = until(lambda: next((p for p in pyatspi.Registry.getDesktop(0) if p and p.name == 'Varnith'), None), 'program')
main = window(
    'Varnith - ', 'Files table Press "Locate" and choose a folder.', 'Ticked table column header', 'Name table column header',
    'Count table column header', 'Path table column header', 'Type table column header', 'Address: label',
    'Address: text', 'Locate button', 'label', 'Include Subfolders check box', 'Filter: combo box',
    'Filter: label', 'File menu item', 'Help menu item')

subfolders = part(main, 'check box', 'Include Subfolders')
do('Toggle', subfolders)
until(lambda: has(subfolders, 'CHECKED'), 'the check box')
do('Press', main, 'button', 'Locate')
dialog = window('Find Directory')
fill_in(dialog, 'Directory:', 'sample')
do('Press', dialog, 'button', 'Choose')
until(lambda: main.name.endswith(' - Finished') and has(main, 'ACTIVE'), 'the end of the scan')

# By keys, a row is read as it is reached, and so is its tick. By the bus, a tick leaves the highlight alone.
table = part(main, 'table', 'Files').queryTable()
press('Down')
expect_heard('lease, annex.tiff table cell')
press('space')
expect_heard('Ticked check box checked')
press('Tab', 'Right')
expect_heard('Name table column header')
press('shift+Tab')
tick = table.getAccessibleAt(2, 0)
do('toggle', tick)
until(lambda: has(tick, 'CHECKED'), 'the tick')
assert list(table.getSelectedRows()) == [0]
press('Menu', 'Up')
expect_heard('Invert Selection menu item')
press('Return')
expect_heard('changed: Ticked check box')
do('Press', table.getColumnHeader(2))
until(lambda: said(table.getColumnHeader(2)) == 'Count table column header sorted ascending', 'sorting')
press('Home')
expect_heard('cover.TIF table cell')

do('Press', main, 'menu item', 'Export')
exporter = window('Export', 'Type: label', 'Select Type combo box Type:', 'Separator: label', 'Separator: text',
                  'Save button')
press('Tab')
expect_heard('Select Type combo box Type:')
press('t', 'e')
until(lambda: 'Text Document combo box Type:' in map(said, parts(exporter)), 'the kind of export')
fill_in(exporter, 'Separator:', ' / ')
do('Press', exporter, 'button', 'Save')
dialog = window('Save As')
fill_in(dialog, 'File name:', 'list')
do('Press', dialog, 'button', 'Save')
window('Varnith - ')
with open(f'{home}/list.txt', encoding='utf-8') as exported:
    rows = [row.split(' / ') for row in exported]
assert len(rows) == 10 and rows[0][:2] == ['cover.TIF', '1'], rows
assert not {row[0] for row in rows} & {'lease, annex.tiff', 'Müller & Söhne.tif'}, rows

do('Press', main, 'menu item', 'Support')
form = window('Support Feedback', 'Email: label', 'Email: text', 'Name: label', 'Name: text', 'Type: label',
              'N/A combo box Type:', 'Details: label', 'Details: text', 'Close button', 'Send button disabled')
for name in 'Email:', 'Name:', 'Details:':
    fill_in(form, name, 'nobody')
send = part(form, 'button', 'Send')
until(lambda: has(send, 'ENABLED'), 'Send')
do('Press', send)
message = window('Varnith', 'image', 'nobody not valid email label', 'OK button')
do('Press', message, 'button', 'OK')
do('Press', window('Support Feedback'), 'button', 'Close')
window('Varnith - ')

do('Press', main, 'menu item', 'About')
about = window(
    'About: Varnith - ', 'Varnith label', 'Version: V label', 'Build Date: 2008-06-24 label',
    '© The Varnith developers link', 'varnith.example link', 'A stack of pages image', 'An arrow image',
    'A list of files with their page counts image')
do('Press', about, 'link', 'varnith.example')
until(lambda: os.path.exists(f'{home}/visited'), 'the browser')
press('ctrl+w')
window('Varnith - ')
do('Press', main, 'menu item', 'Quit')
