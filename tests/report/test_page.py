"""What the report says: to the letter, as valid HTML, and as a browser and a printer show it."""
import base64
import re
import subprocess
from datetime import datetime, timezone

import html5lib
import pytest

import expected
import private_machine
from laptop import COLD, Laptop
from viewer import PICTURES, wait_for

pytestmark = private_machine.needed

XHTML = '{http://www.w3.org/1999/xhtml}'
BLOCKS = {XHTML + name for name in ('html', 'body', 'div', 'header', 'main', 'footer', 'h1', 'h2', 'table', 'thead', 'tbody',
                                    'tr', 'td', 'th', 'ol', 'li', 'button')}
WIDE, PHONE = {'width': 1000, 'height': 1400}, {'width': 390, 'height': 844, 'phone': True}
READY = dict(bridge='38.4 °C', badge=expected.BRIDGE_READY[1], pmu='37.1 °C', soc='41.3 °C / 45.0 °C',
             battery='30.0 °C (Level: 100% - AC Charging)')
NOT_READY = dict(bridge='21.0 °C', badge=expected.BRIDGE_COLD[1], pmu='20.0 °C', soc='22.5 °C / 22.5 °C',
                 battery='20.0 °C (Level: 7% - DC Power)')


def parsed(file):
    return html5lib.HTMLParser(strict=True).parse(file.read_bytes(), transport_encoding='utf-8')


def lines(body):
    """The text of a page, block for block, with spaces as a browser has them."""
    found = ['']

    def walk(element):
        is_block = element.tag in BLOCKS
        if is_block:
            found.append('')
        found[-1] += element.text or ''
        for child in element:
            walk(child)
            found[-1] += child.tail or ''
        if is_block:
            found.append('')

    walk(body)
    return [line for line in (' '.join(text.split()) for text in found) if line]


def words(element):
    return ' '.join(''.join(element.itertext()).split())


def date_in(file):
    return re.search('Date: ([^<]*)<', file.read_text()).group(1)


@pytest.mark.parametrize('which', ['warm', 'cold'])
def test_it_says_what_it_has_to_say_to_the_letter(request, which):
    file = request.getfixturevalue(which + '_report')
    page = parsed(file)
    values = READY if which == 'warm' else NOT_READY
    assert words(page.find('.//%stitle' % XHTML)) == expected.TITLE
    assert lines(page.find(XHTML + 'body')) == expected.texts(date_in(file), **values)
    assert [words(element) for element in page.iter(XHTML + 'strong')] == expected.bold(values['bridge'])
    badges = [(element.get('class').split(), words(element)) for element in page.iter(XHTML + 'span')
              if 'badge' in element.get('class').split()]
    bridge = expected.BRIDGE_READY if which == 'warm' else expected.BRIDGE_COLD
    assert badges == [(['badge', name], text) for name, text in expected.badges(bridge)]
    for text in expected.RAW:
        assert file.read_text().count(text) == 1, text


def test_the_parts_of_the_page_have_their_places(warm_report):
    page = parsed(warm_report)

    def classes(element):
        return (element.get('class') or '').split()

    body = page.find(XHTML + 'body')
    assert [classes(child) for child in body] == [['container']]
    assert [classes(child) for child in body[0]] == [['header'], ['content'], ['footer']]
    header, content, footer = body[0]
    assert [classes(child) for child in header[0]] == [['brand'], ['report-title']]
    assert classes(header[1]) == ['meta'] and len(header[1]) == 2
    assert [classes(child) for child in content] == [
        ['section-title'], ['box', 'box-warning'], ['section-title'], [], ['section-title'], [], ['section-title'], ['box']]
    assert [classes(child) for child in footer] == [[], ['no-print']]
    assert [[len(row) for row in table.iter(XHTML + 'tr')] for table in content.iter(XHTML + 'table')] == [[3] * 5] * 2
    assert [len(items) for items in content.iter(XHTML + 'ol')] == [4]
    links = list(footer.iter(XHTML + 'a'))
    assert [link.get('target') for link in links] == ['_blank', '_blank']
    assert all(re.fullmatch(r'https://[a-z.]+\.example/', link.get('href')) for link in links)
    assert classes(footer[1][0]) == ['btn']


def test_it_is_valid_html(warm_report, cold_report):
    for file in (warm_report, cold_report):
        parsed(file)  # strictly: raises at the first mistake
        tidy = subprocess.run(['tidy', '-errors', '-quiet', '-utf8', file], capture_output=True, text=True, timeout=60)
        assert (tidy.stderr, tidy.returncode) == ('', 0)


def test_the_validators_see_a_mistake(warm_report, tmp_path):
    text = warm_report.read_text()
    wrong = tmp_path / 'wrong.html'
    for mistake in (text.replace('</tr>', '', 1).replace('</table>', '</tabel>', 1), text.replace('lang="en"', 'lang="en" lang="de"')):
        assert mistake != text
        wrong.write_text(mistake)
        with pytest.raises(html5lib.html5parser.ParseError):
            parsed(wrong)
        assert subprocess.run(['tidy', '-errors', '-quiet', '-utf8', wrong], capture_output=True, timeout=60).returncode != 0


def test_the_date_is_this_moment_in_the_users_zone_and_language(tmp_path):
    with Laptop(tmp_path / 'far east', TZ='Etc/GMT-9', LANG='en_US.UTF-8') as laptop:
        before = datetime.now(timezone.utc)
        file = laptop.report()
        after = datetime.now(timezone.utc)
        date = date_in(file).replace('\u202f', ' ')
        there = datetime.strptime(date + ' +0900', '%B %d, %Y at %I:%M:%S %p %z')
        assert before.replace(microsecond=0) <= there <= after
    with Laptop(tmp_path / 'berlin', LC_ALL='de_DE.UTF-8') as laptop:
        assert re.fullmatch(r'\d+\. \w+ \d{4} um \d\d:\d\d:\d\d', date_in(laptop.report()))


def test_a_warm_chip_alone_is_ready_and_a_second_report_replaces_the_first(tmp_path):
    with Laptop(tmp_path, COLD) as laptop:
        first = laptop.report()
        assert 'Contracted' in first.read_text()
        (laptop.sys / 'class/hwmon/hwmon0/temp4_input').write_text('40000\n')
        assert laptop.report() == first
        assert 'Expanded' in first.read_text() and 'Contracted' not in first.read_text()
        assert laptop.on_desktop() == [first.name]


def test_a_machine_without_sensors_says_so_in_zeros(tmp_path):
    with Laptop(tmp_path, {}) as laptop:
        text = ' '.join(lines(parsed(laptop.report())))
        assert 'Display Bridge Reference 0.0 °C Contracted (Blank Risk)' in text
        assert '0.0 °C / 0.0 °C' in text and '0.0 °C (Level: 100% - AC Charging)' in text


def test_a_browser_shows_it_in_the_wanted_style(browser, warm_report):
    browser.open(warm_report.as_uri(), **WIDE)
    for name, value in expected.VARIABLES.items():
        assert browser.ask('getComputedStyle(document.documentElement).getPropertyValue("%s").trim()' % name) == value
    for selector, wanted in expected.STYLES.items():
        styles = browser.driver.execute_script(
            'const style = getComputedStyle(document.querySelector(arguments[0]));'
            'return Object.fromEntries(arguments[1].map(name => [name, style.getPropertyValue(name)]));', selector, list(wanted))
        assert styles == wanted, selector
    ratio = browser.ask('parseFloat(getComputedStyle(document.body).lineHeight)'
                        ' / parseFloat(getComputedStyle(document.body).fontSize)')
    assert ratio == pytest.approx(1.5)
    assert browser.ask('getComputedStyle(document.querySelector(".container")).boxShadow') != 'none'
    box = 'document.querySelector("%s").getBoundingClientRect()'
    left, right = browser.ask(box % '.container' + '.left'), browser.ask(box % '.container' + '.right')
    assert left == 1000 - right, 'centred'
    assert browser.ask(box % '.brand' + '.right') < browser.ask(box % '.meta' + '.left'), 'side by side'
    inner = browser.ask(box % '.content' + '.left') + 32, browser.ask(box % '.content' + '.right') - 32
    assert (browser.ask(box % '.footer div' + '.left'), browser.ask(box % '.btn' + '.right')) == inner, 'spread'
    assert browser.ask(box % '.footer div' + '.right') < browser.ask(box % '.btn' + '.left'), 'side by side'
    assert browser.mishaps() == []


def test_the_button_is_darker_under_the_pointer(browser, warm_report):
    browser.open(warm_report.as_uri(), **WIDE)
    ground = 'getComputedStyle(document.querySelector(".btn")).backgroundColor'
    box = browser.ask('document.querySelector(".btn").getBoundingClientRect()')
    for place, wanted in (((box['x'] + 5, box['y'] + 5), expected.PRIMARY_DARK), ((1, 1), expected.PRIMARY)):
        browser.command('Input.dispatchMouseEvent', type='mouseMoved', x=place[0], y=place[1])
        wait_for(lambda color=wanted: browser.ask(ground) == color, 30, wanted)


@pytest.mark.parametrize('size', [WIDE, PHONE], ids=['wide', 'phone'])
@pytest.mark.parametrize('which', ['warm', 'cold'])
def test_nothing_is_cut_off(request, browser, which, size):
    browser.open(request.getfixturevalue(which + '_report').as_uri(), **size)
    assert browser.ask('document.documentElement.scrollWidth') <= size['width']
    cut = browser.ask('''Array.from(document.querySelectorAll('body *')).filter(element => {
        const box = element.getBoundingClientRect(), card = document.querySelector('.container').getBoundingClientRect();
        return box.right > card.right || box.left < card.left || element.scrollWidth > element.clientWidth + 1
            && getComputedStyle(element).display !== 'inline';
    }).map(element => element.outerHTML.slice(0, 80))''')
    assert cut == []
    assert browser.ask('getComputedStyle(document.querySelector(".badge")).borderRadius') == '20px'
    height = browser.ask('document.documentElement.scrollHeight')
    browser.command('Emulation.setDeviceMetricsOverride', width=size['width'], height=height,
                    deviceScaleFactor=2 if 'phone' in size else 1, mobile='phone' in size)
    browser.screenshot('report-%s-%d.png' % (which, size['width']))


def test_the_button_prints(browser, warm_report):
    browser.open(warm_report.as_uri(), **WIDE)
    browser.ask('window.printed = 0, window.print = () => { window.printed += 1; }')
    browser.click('Print / Save PDF')
    assert browser.ask('window.printed') == 1


@pytest.mark.parametrize('colors', [False, True], ids=['plain', 'coloured'])
def test_it_prints_on_two_sheets_at_most_without_the_button(browser, warm_report, tmp_path, colors):
    browser.open(warm_report.as_uri(), **WIDE)
    a4 = {'paperWidth': 8.27, 'paperHeight': 11.69}
    sheets = tmp_path / 'report.pdf'
    sheets.write_bytes(base64.b64decode(browser.command('Page.printToPDF', printBackground=colors, **a4)['data']))
    about = subprocess.run(['pdfinfo', sheets], capture_output=True, text=True, check=True, timeout=60).stdout
    assert int(re.search(r'Pages: +(\d+)', about).group(1)) <= 2  # one with narrow letters
    assert 'A4' in about
    text = subprocess.run(['pdftotext', '-raw', sheets, '-'], capture_output=True, text=True, check=True, timeout=60).stdout
    text = ' '.join(text.split())
    for line in ('HARDWARE INTERCONNECT & THERMAL DIAGNOSTIC REPORT', '38.4 °C', 'Micro-fracture confirmed',
                 'if angle-dependent flicker is observed.', 'Powered by tools.quenmark.example'):
        assert line in text
    assert 'Print / Save PDF' not in text
    PICTURES.mkdir(parents=True, exist_ok=True)
    subprocess.run(['pdftoppm', '-r', '80', '-png', sheets, PICTURES / ('report-print-%s' % ('coloured' if colors else 'plain'))],
                   check=True, timeout=60)


def test_on_paper_it_is_without_frame(browser, warm_report):
    browser.open(warm_report.as_uri(), **WIDE)
    browser.command('Emulation.setEmulatedMedia', media='print')
    try:
        style = 'getComputedStyle(document.querySelector("%s")).%s'
        assert browser.ask(style % ('body', 'backgroundColor')) == 'rgb(255, 255, 255)'
        assert browser.ask(style % ('body', 'padding')) == '0px'
        assert browser.ask(style % ('.container', 'boxShadow')) == 'none'
        assert browser.ask(style % ('.container', 'borderTopWidth')) == '0px'
        assert browser.ask(style % ('.no-print', 'display')) == 'none'
        assert browser.ask(style % ('.badge', 'borderRadius')) == '20px'
        assert browser.ask(style % ('td', 'padding')) == '10px 12px'
    finally:
        browser.command('Emulation.setEmulatedMedia', media='')


def test_the_template_can_be_read_in_a_browser(browser):
    from laptop import ROOT
    browser.open((ROOT / 'report/template.html').as_uri(), **WIDE)
    shown = browser.ask('document.body.innerText')
    assert 'Date: {{date}}' in shown and '{{bridgeTemp}} °C' in shown
    assert browser.mishaps() == []
