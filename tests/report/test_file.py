"""Where the report lies, what becomes of it when the disk does not play along, and who is asked to show it."""
import os
import signal
import subprocess
from pathlib import Path
from urllib.parse import unquote

import pytest

import private_machine
from laptop import NAME, Laptop, choose_browser, opened, write
from viewer import wait_for

pytestmark = private_machine.needed

IS_ROOT = Path('/proc/self/uid_map').read_text().split() == ['0', '0', '4294967295'] and os.geteuid() == 0
AS_ROOT = pytest.mark.skipif(not IS_ROOT, reason='only root has files of other users')


def shown(laptop):
    """The paths that the browser was asked to show; some desktops hand over an address, some a path."""
    return [unquote(name.removeprefix('file://')) if name.startswith('file://') else name for name in opened(laptop)]


def mount(laptop, target, options, kind='tmpfs'):
    """From now on that laptop has a disk of that kind there; its files are seen through the program's eyes alone."""
    laptop.preparation += 'mount -t %s -o %s %s "%s"\n' % (kind, options, kind, target)


def seen(laptop, folder):
    """What `ls` shows there to the running program: names and sizes."""
    return subprocess.run(['nsenter', '--mount=/proc/%d/ns/mnt' % laptop.process.pid, 'find', folder, '-mindepth', '1', '-printf',
                           '%f %s\n'], capture_output=True, text=True, timeout=60, check=True).stdout.splitlines()


def helpers(laptop):
    """Processes that the program has started there and that still run. It has when the operation returns.

    Known by the view of the machine that they share with it: in the first moments of a program its environment is empty.
    """
    def view(process):
        try:
            return os.readlink('/proc/%s/ns/mnt' % process)
        except OSError:
            return None  # ended, or not ours to look at

    there = view(laptop.process.pid)
    assert there
    return [int(process) for process in os.listdir('/proc')
            if process.isdigit() and int(process) != laptop.process.pid and view(process) == there]


def shown_in_the_end(laptop):
    """What was shown once everybody has done what there was to do."""
    wait_for(lambda: not helpers(laptop), 30, 'the end of those who open files')
    assert (laptop.other_output(), laptop.errors()) == ('', '')
    return shown(laptop)


def nothing_comes_of_it(laptop):
    """No report, and nothing that is shown."""
    assert laptop.report() is None
    assert shown_in_the_end(laptop) == []


def then_a_good_one(laptop):
    file = laptop.report()
    assert file is not None
    assert shown_in_the_end(laptop) == [str(file)]


def test_the_browser_of_the_users_choice_is_asked_to_show_it(owner):
    file = owner.report()
    assert file == owner.desktop_folder / NAME
    assert owner.on_desktop() == [NAME]
    assert shown_in_the_end(owner) == [str(file)]
    assert owner.report() == file
    assert shown_in_the_end(owner) == [str(file)] * 2


@pytest.mark.parametrize('home', ['Jürgen Groß', '100% #1 & more?', "it's", 'a;b|c $HOME'])
def test_a_home_may_have_any_name(screen, tmp_path, home):
    with Laptop(tmp_path, desktop=screen, home=home) as laptop:
        choose_browser(laptop)
        then_a_good_one(laptop)
        assert laptop.on_desktop() == [NAME]


def test_a_browser_that_hangs_holds_nobody_up(owner):
    choose_browser(owner, 'echo $$ >"%s/hangs"; exec sleep 1000' % owner.folder)
    hangs = owner.folder / 'hangs'
    assert owner.report() is not None
    browser = int(wait_for(lambda: hangs.exists() and hangs.read_text(), 30, 'the browser'))
    assert owner.report() is not None  # answered while the first one still hangs
    assert os.path.exists('/proc/%d' % browser)
    wait_for(lambda: len(opened(owner)) == 2, 30, 'the second browser')
    left = helpers(owner)
    owner.leave()
    assert os.path.exists('/proc/%d' % browser)
    for pid in left:
        os.kill(pid, signal.SIGKILL)


def test_a_desktop_without_a_browser_is_no_error(screen, tmp_path):
    with Laptop(tmp_path, desktop=screen) as laptop:
        laptop.command_prefix = ['env', 'PATH=/nowhere']
        assert laptop.report() == laptop.desktop_folder / NAME


def test_the_folder_is_the_one_that_the_system_names(owner):
    (owner.home / 'Schreib tisch').mkdir()
    write(owner.home / '.config/user-dirs.dirs', 'XDG_DESKTOP_DIR="$HOME/Schreib tisch"')
    file = owner.report()
    assert file == owner.home / 'Schreib tisch' / NAME
    assert os.listdir(file.parent) == [NAME] and owner.on_desktop() == []
    assert shown_in_the_end(owner) == [str(file)]


def test_a_missing_desktop_is_not_made(owner):
    owner.desktop_folder.rmdir()
    nothing_comes_of_it(owner)
    assert not owner.desktop_folder.exists()
    owner.desktop_folder.mkdir()
    then_a_good_one(owner)


def test_a_folder_in_its_place_stays(owner):
    (owner.desktop_folder / NAME).mkdir()
    nothing_comes_of_it(owner)
    assert owner.on_desktop() == [NAME]
    (owner.desktop_folder / NAME).rmdir()
    then_a_good_one(owner)


@pytest.mark.parametrize('target', ['precious', 'missing'])
def test_a_link_in_its_place_is_replaced_and_not_followed(owner, target):
    precious = owner.home / 'precious'
    precious.write_text('precious')
    (owner.desktop_folder / NAME).symlink_to(owner.home / target)
    file = owner.report()
    assert file.is_file() and not file.is_symlink()
    assert precious.read_text() == 'precious' and not (owner.home / 'missing').exists()
    assert owner.on_desktop() == [NAME]


@AS_ROOT
def test_another_users_file_stays(owner):
    theirs = owner.desktop_folder / NAME
    theirs.write_text('theirs')
    os.chown(theirs, 65534, 65534)
    nothing_comes_of_it(owner)
    assert theirs.read_text() == 'theirs' and owner.on_desktop() == [NAME]
    os.chown(theirs, os.geteuid(), -1)
    then_a_good_one(owner)


def mine_and_read_only(laptop):
    """Makes the laptop an ordinary user's, whose Desktop takes no new files."""
    subprocess.run(['chown', '-R', '65534', laptop.folder], check=True)
    for folder in [laptop.folder, *laptop.folder.parents]:
        if os.stat(folder).st_uid in (0, 65534) and str(folder).startswith('/tmp/'):
            os.chmod(folder, os.stat(folder).st_mode | 0o755)
    laptop.command_prefix = ['setpriv', '--reuid=65534', '--clear-groups']
    laptop.environment['XDG_RUNTIME_DIR'] = str(laptop.folder / 'runtime')


@AS_ROOT
def test_a_read_only_folder_takes_nothing(owner):
    earlier = owner.desktop_folder / NAME
    earlier.write_text('earlier')
    mine_and_read_only(owner)
    os.chmod(owner.desktop_folder, 0o555)
    nothing_comes_of_it(owner)
    assert earlier.read_text() == 'earlier' and owner.on_desktop() == [NAME]
    os.chmod(owner.desktop_folder, 0o755)
    assert owner.report() == earlier
    assert 'Display Bridge Reference' in earlier.read_text()


def test_a_full_disk_takes_nothing_and_leaves_nothing(owner):
    mount(owner, owner.desktop_folder, 'size=64k')
    owner.preparation += 'echo earlier >"%s/%s"\n' % (owner.desktop_folder, NAME)
    owner.preparation += 'head -c 1M /dev/zero >"%s/others" 2>/dev/null || true\n' % owner.desktop_folder
    nothing_comes_of_it(owner)
    names = sorted(seen(owner, owner.desktop_folder))
    assert names == ['%s %d' % (NAME, len('earlier\n')), 'others %d' % (60 * 1024)]
    subprocess.run(['nsenter', '--mount=/proc/%d/ns/mnt' % owner.process.pid, 'rm', owner.desktop_folder / 'others'], check=True)
    then_a_good_one(owner)
    (line,) = seen(owner, owner.desktop_folder)
    assert line.startswith(NAME) and int(line.split()[1]) > 5000


def test_room_for_half_of_it_is_not_enough(owner):
    mount(owner, owner.desktop_folder, 'size=8k')
    owner.preparation += 'head -c 4096 /dev/zero >"%s/others"\n' % owner.desktop_folder
    nothing_comes_of_it(owner)
    assert seen(owner, owner.desktop_folder) == ['others 4096']


def test_a_disk_mounted_read_only_takes_nothing(owner):
    mount(owner, owner.desktop_folder, 'ro')
    nothing_comes_of_it(owner)
    assert seen(owner, owner.desktop_folder) == []


@pytest.mark.parametrize('umask,mode', [(0o022, 0o644), (0o077, 0o600)])
def test_it_is_the_users_document(owner, umask, mode):
    owner.preparation += 'umask %o\n' % umask
    assert owner.report().stat().st_mode & 0o7777 == mode
