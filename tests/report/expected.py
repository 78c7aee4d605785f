"""What the report says and how it looks, written down once more and by hand, with nothing taken from the program."""

TITLE = 'Hardware Diagnostic Report - Quenmark Technologies'

BRIDGE_READY = ('badge-success', 'Expanded / Bridged (Online)')
BRIDGE_COLD = ('badge-warning', 'Contracted (Blank Risk)')


def texts(date, bridge, badge, pmu, soc, battery):
    """All that a reader of the page sees, in its order, one line for each block."""
    return [
        '🛡️ Orvalen BY QUENMARK TECHNOLOGIES',
        'HARDWARE INTERCONNECT & THERMAL DIAGNOSTIC REPORT',
        'Date: ' + date,
        'Target Model: MacBook Air (M1, 2020)',
        '1. Executive Summary & Diagnostic Finding',
        'Summary: The MacBook M1 SoC, GPU, and Display Controller are 100% HEALTHY and fully generating frames. '
        'The reported "blank / black screen" symptom is isolated to a '
        'Thermal Expansion Contact Fault (Cold Solder / Flexgate Micro-fracture) on the display interconnect bus. '
        'The circuit opens when cold (<34°C) and physically reconnects when warm (≥38°C) '
        'or upon connecting a 16W USB-C charger.',
        '2. Real-Time Telemetry at Time of Report',
        'Subsystem / Sensor', 'Measured Temperature', 'Circuit Status',
        'Display Bridge Reference', bridge, badge,
        'Power Management Unit (PMU)', pmu, 'Nominal / Regulated',
        'Apple M1 SoC Die (Average / Max)', soc, 'Healthy (Zero GPU Artifacts)',
        'Battery System', battery, 'Normal Operating State',
        '3. Subsystem Health & Anti-Scam Verification',
        'Component', 'Verification Method', 'Result',
        'Apple M1 GPU Core', 'macOS Metal 4 Frame Rendering', 'PASSED (100% Functional)',
        'Internal Display Bus', 'eDP Handshake in IOKit Display Registry', 'DETECTED (Online: Yes)',
        'VRAM / Unified Memory', 'Zero memory pressure panics', 'PASSED',
        'Interconnect Joint', 'Thermal cycling hysteresis test', 'Micro-fracture confirmed',
        '4. Actionable Instructions for Repair Technician',
        'To the Service Engineer / Micro-Soldering Specialist:',
        'DO NOT replace the Logic Board. The M1 processor and graphics cores are completely intact.',
        'Inspect Logic Board Display Connector J8500 under a stereo microscope for cracked solder joints or oxidation '
        'on the backlight boost line (PPVOUT_S0_LCDBKLT) and 3.3V logic line.',
        'Reflow pins or install micro-jumpers on fractured traces before recommending a costly full display assembly '
        'replacement.',
        'Verify the clutch hinge flex cable for trace fatigue if angle-dependent flicker is observed.',
        'Crafted by Quenmark Technologies quenmark.example • Powered by tools.quenmark.example',
        'Print / Save PDF',
    ]


def bold(bridge):
    """The bold words, in their order."""
    return [
        'Summary:',
        '100% HEALTHY',
        'Thermal Expansion Contact Fault (Cold Solder / Flexgate Micro-fracture)',
        bridge,
        'To the Service Engineer / Micro-Soldering Specialist:',
        'DO NOT replace the Logic Board.',
        'Logic Board Display Connector J8500',
        'Quenmark Technologies',
    ]


def badges(bridge):
    """Class and text of each badge, in their order."""
    return [
        bridge,
        ('badge-success', 'PASSED (100% Functional)'),
        ('badge-success', 'DETECTED (Online: Yes)'),
        ('badge-success', 'PASSED'),
        ('badge-warning', 'Micro-fracture confirmed'),
    ]


# As they stand in the file, entities and raw ampersands included.
RAW = [
    '<!DOCTYPE html>\n<html lang="en">',
    '<meta charset="UTF-8">',
    '<meta name="viewport" content="width=device-width, initial-scale=1.0">',
    'HARDWARE INTERCONNECT & THERMAL DIAGNOSTIC REPORT',
    'Executive Summary & Diagnostic Finding',
    'Subsystem Health & Anti-Scam Verification',
    '"blank / black screen"',
    '(&lt;34°C)',
    '(&ge;38°C)',
    '&bull;',
]

VARIABLES = {
    '--primary': '#4F46E5', '--primary-dark': '#3730A3', '--accent': '#06B6D4', '--success': '#10B981',
    '--warning': '#F59E0B', '--danger': '#EF4444', '--bg': '#F8FAFC', '--card': '#FFFFFF', '--text': '#0F172A',
    '--text-muted': '#64748B', '--border': '#E2E8F0',
}


def rgb(color):
    return 'rgb(%d, %d, %d)' % tuple(bytes.fromhex(color[1:]))


PRIMARY, PRIMARY_DARK, ACCENT, BORDER = rgb('#4F46E5'), rgb('#3730A3'), rgb('#06B6D4'), rgb('#E2E8F0')

# What a browser makes of the style sheet on a desktop's screen, by selector.
STYLES = {
    'body': {'background-color': rgb('#F8FAFC'), 'color': rgb('#0F172A'), 'padding': '30px 20px', 'margin': '0px'},
    '.container': {'max-width': '820px', 'width': '820px', 'background-color': 'rgb(255, 255, 255)', 'border-radius': '14px',
                   'border-width': '1px', 'border-style': 'solid', 'border-color': BORDER},
    '.header': {'background-image': 'linear-gradient(135deg, %s 0%%, %s 100%%)' % (rgb('#0F172A'), rgb('#1E293B')),
                'color': 'rgb(255, 255, 255)', 'padding': '28px 32px', 'justify-content': 'space-between'},
    '.brand': {'font-size': '22px', 'font-weight': '800'},
    '.brand-tag': {'font-size': '11px', 'border-radius': '6px', 'background-color': 'rgba(255, 255, 255, 0.15)'},
    '.report-title': {'font-size': '13px', 'color': ACCENT},
    '.meta': {'text-align': 'right', 'font-size': '12px', 'color': rgb('#94A3B8')},
    '.content': {'padding': '30px 32px'},
    '.badge': {'border-radius': '20px', 'font-size': '12px', 'font-weight': '600'},
    '.badge-success': {'background-color': rgb('#ECFDF5'), 'color': rgb('#065F46')},
    '.badge-warning': {'background-color': rgb('#FFFBEB'), 'color': rgb('#92400E')},
    '.section-title': {'font-size': '15px', 'font-weight': '700', 'text-transform': 'uppercase', 'color': PRIMARY,
                       'border-bottom-style': 'solid'},
    'table': {'width': '754px', 'border-collapse': 'collapse', 'font-size': '13px'},
    'td': {'padding': '10px 12px', 'border-bottom-style': 'solid', 'border-bottom-color': BORDER},
    'th': {'padding': '10px 12px', 'border-bottom-style': 'solid', 'background-color': rgb('#F1F5F9'),
           'color': rgb('#475569')},
    '.box:not(.box-warning)': {'background-color': rgb('#F8FAFC'), 'border-left': '4px solid ' + PRIMARY,
                               'border-radius': '8px'},
    '.box-warning': {'background-color': rgb('#FFFDF5'), 'border-left': '4px solid ' + rgb('#F59E0B'), 'border-radius': '8px'},
    '.footer': {'background-color': rgb('#F8FAFC'), 'border-top-style': 'solid', 'color': rgb('#64748B'),
                'font-size': '12px', 'justify-content': 'space-between'},
    '.footer a:first-of-type': {'color': PRIMARY},
    '.footer a:last-of-type': {'color': ACCENT},
    '.btn': {'background-color': PRIMARY, 'color': 'rgb(255, 255, 255)', 'border-radius': '6px'},
}
