"""The report goes to strangers: nothing in it tells whose laptop it is about."""
import os
import subprocess

import pytest

import private_machine
from laptop import Laptop, write

pytestmark = private_machine.needed

HOST, USER, HOME, MACHINE = 'zanzibar-host', 'gundula', 'home-of-xaver', '5e1a15e1a15e1a15e1a15e1a15e1a15e'
ADDRESS, MAC, PORT = '10.99.88.77', '02:5e:1a:1f:ea:77', 'plantedif0'
SERIALS = {
    'class/dmi/id/product_serial': 'SERIAL-PRODUCT-4711', 'class/dmi/id/board_serial': 'SERIAL-BOARD-4712',
    'class/dmi/id/chassis_serial': 'SERIAL-CHASSIS-4713', 'class/dmi/id/product_uuid': 'a1b2c3d4-4714-4715-4716-f1e2d3c4b5a6',
    'class/dmi/id/product_name': 'Distinctive Notebook 4717',
    'class/power_supply/BAT0/serial_number': 'SERIAL-BATTERY-4718', 'class/power_supply/BAT0/manufacturer': 'CELLMAKER-4719',
    'class/power_supply/BAT0/model_name': 'CELLMODEL-4720',
    'firmware/devicetree/base/serial-number': 'SERIAL-TREE-4721', 'class/net/planted/address': MAC,
    'class/hwmon/hwmon0/device/serial': 'SERIAL-CHIP-4722',
}
PLANTED = [HOST, USER, HOME, MACHINE, ADDRESS, MAC, PORT, *SERIALS.values()]


@pytest.fixture
def interface():
    def ip(*command):
        return subprocess.run(['ip', *command], capture_output=True, timeout=60).returncode == 0

    made = ip('link', 'add', PORT, 'type', 'veth', 'peer', 'name', 'plantedpeer') and \
        ip('link', 'set', PORT, 'address', MAC) and ip('address', 'add', ADDRESS + '/24', 'dev', PORT) and \
        ip('link', 'set', PORT, 'up')
    if not made:
        pytest.skip('no network interface to be had here')
    yield
    ip('link', 'del', PORT)


def test_nothing_tells_whose_laptop_it_is(tmp_path, interface):
    with Laptop(tmp_path, home=HOME, HOSTNAME=HOST, USER=USER, LOGNAME=USER, MAIL=USER + '@' + HOST) as laptop:
        for file, text in SERIALS.items():
            write(laptop.sys / file, text)
        write(tmp_path / 'machine-id', MACHINE)
        passwd = '%s:x:%d:0:%s the Owner:%s:/bin/sh' % (USER, os.geteuid(), USER, laptop.home)
        write(tmp_path / 'passwd', passwd)
        laptop.preparation = 'hostname %s\nmount --bind "%s/machine-id" /etc/machine-id\nmount --bind "%s/passwd" /etc/passwd\n' \
            % (HOST, tmp_path, tmp_path)
        # The same laptop shows all of it to whoever looks.
        told = laptop.output('sh', '-c', 'hostname; id; env; cat /etc/machine-id; ip address; cd /sys; cat ' + ' '.join(SERIALS))
        assert [word for word in PLANTED if word.lower() not in told.lower()] == []

        report = laptop.report()
        assert HOME in str(report)
        page = report.read_bytes().decode('utf-8').lower()
        assert 'display bridge reference' in page
        assert [word for word in PLANTED if word.lower() in page] == []
        assert [name for name, value in laptop.environment.items() if len(value) > 8 and value.lower() in page] == []
