"""Writes the minefield: snapshots that must be accepted (y_*) or refused (n_*).

    make.py           writes the files, and messages.tsv with the message for each refused one
    make.py --check   fails if a file differs from the output of this script

Every message is written here by hand, from the format's description.
"""

import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent

HEADER = '{"fabscan_snapshot":2}\n'
WHOLE = '"name":"S1","guid":"0x1","type":"SW","numPorts":4'


def end(nodes):
    return '{"end":true,"nodes":%d}\n' % nodes


def file(*nodes):
    """A whole snapshot of these node lines."""
    return HEADER + "".join(node + "\n" for node in nodes) + end(len(nodes))


def node(more="", whole=WHOLE):
    return file("{" + whole + more + "}")


def port(more="", num="1", state='"ARM"'):
    return node(',"ports":[{"num":%s,"state":%s%s}]' % (num, state, more))


def version_1(text):
    return text.replace(HEADER, '{"fabscan_snapshot":1}\n')


def two(first="", second="", more=""):
    """Two switches with port 1 each, and more of the two ports."""
    line = '{"name":"S%d","guid":"0x%d","type":"SW","numPorts":4,"ports":[{"num":1,"state":"ARM"%s}]}'
    return file(line % (1, 1, first), line % (2, 2, second), *([more] if more else []))


def peer(guid, number):
    return ',"peer":{"guid":"0x%x","port":%d}' % (guid, number)


def attribute(records):
    return node(',"attributes":{%s}' % records)


def port_attribute(records):
    return port(',"attributes":{%s}' % records)


def number(value):
    """A 32-bit field of this value."""
    return port_attribute('"WrenReductionPortInfo":{"capability_mask":%s}' % value)


def named(name):
    """A node whose name is this JSON value."""
    return file('{"name":%s,"guid":1,"type":"SW","numPorts":4}' % name)


def adapter(more):
    return file('{"name":"H1","guid":1,"type":"CA","numPorts":1%s}' % more)


INFO = '"WrenReductionInfo":{"capability_mask":1,"hbf_group_cap":1,"reduction_fdb_cap":1}'
PORT_INFO = '"WrenReductionPortInfo":{"capability_mask":1}'

COUNTERS = (
    "incoming_good_mc_read_req_pkt incoming_good_mc_read_req_data incoming_good_mc_write_req_pkt "
    "incoming_good_mc_write_req_data incoming_good_mc_read_resp_pkt incoming_good_mc_read_resp_data "
    "incoming_good_mc_write_resp_pkt incoming_good_mc_write_resp_data generated_mc_read_resp_pkt "
    "generated_mc_read_resp_data generated_mc_write_resp_pkt generated_mc_write_resp_data "
    "dropped_pkt trapped_pkt wren_reduction_errors wren_reduction_penalty_box_errors "
    "port_wrr_local_alm_id_allocations port_wrr_global_alm_id_allocations "
    "sent_good_mc_pull_write_req_packet sent_good_mc_pull_read_req_packet")


def counter_set(index):
    fields = ",".join('"%s":%d' % (name, i) for i, name in enumerate(COUNTERS.split()))
    return '"%d":{%s}' % (index, fields)


# ---------- Accepted files ----------

YES = {
    "no_nodes": file(),
    "one_node": node(),
    "no_last_line_end": node()[:-1],
    "carriage_returns": node().replace("\n", "\r\n"),
    "blanks_between_tokens": node().replace(":", " : ").replace(",", " ,\t"),
    "trailing_blanks": node().replace("}\n", "} \t\n"),
    "header_source_and_created": '{"created":"1970","fabscan_snapshot":2,"source":"a"}\n' + end(0),
    "header_version_1": version_1(node()),
    "header_extra": HEADER.replace("}", ',"extra":{"a":[1,-2.5e3,true,null,"\\u0041",{}]}}') + end(0),
    "header_version_in_hexadecimal": '{"fabscan_snapshot":"0x1"}\n' + end(0),
    "end_keys_swapped": HEADER + '{"nodes":0,"end":true}\n',
    "node_keys_in_any_order": file('{"numPorts":4,"type":"SW","guid":"0x1","name":"S1"}'),
    "ports_before_identity": file('{"ports":[{"state":"ARM","num":4}],' + WHOLE + "}"),
    "escaped_key": file('{"\\u006eame":"S1","guid":1,"type":"SW","numPorts":0}'),
    "name_empty": named('""'),
    "name_with_newline": named('"a\\nb"'),
    "name_with_zero_byte": named('"a\\u0000b"'),
    "name_with_comment": named('"/* // */"'),
    "name_with_surrogate_pair": named('"\\ud83d\\ude00"'),
    "name_with_direction_override": named('"\\u202eevil"'),
    "name_with_percent_escape": named('"50%25"'),
    "name_long": named('"' + "n" * 5000 + '"'),
    "name_escaped_bytes": named('{"escaped":"leaf %FF%FE"}'),
    "name_escaped_plain": named('{"escaped":"leaf"}'),
    "guid_zero": file('{"name":"S1","guid":0,"type":"SW","numPorts":4}'),
    "guid_largest": file('{"name":"S1","guid":18446744073709551615,"type":"SW","numPorts":4}'),
    "guid_upper_case": file('{"name":"S1","guid":"0XABCDEF","type":"SW","numPorts":4}'),
    "guid_leading_zeros": file('{"name":"S1","guid":"0x%s1","type":"SW","numPorts":4}' % ("0" * 40)),
    "every_type": file(*['{"name":"%s","guid":%d,"type":"%s","numPorts":1}' % (t, i, t)
                         for i, t in enumerate(("SW", "RTR", "CA", "UNKNOWN"))]),
    "every_special_node": file(*['{"name":"%s","guid":%d,"type":"CA","numPorts":1,"specialNode":"%s"}'
                                 % (t, i, t) for i, t in enumerate(("AN", "ROUTER", "ETH_GATEWAY"))]),
    "every_port_state": node(',"ports":[%s]' % ",".join(
        '{"num":%d,"state":"%s"}' % pair
        for pair in enumerate(("UNKNOWN", "DOWN", "INIT", "ARM", "ACTIVE")))),
    "link": two(peer(2, 1), peer(1, 1)),
    "link_to_another_fabric": two(peer(0x7, 200)),
    "link_from_a_switch_to_itself": node(',"ports":[{"num":1,"state":"ARM"%s},{"num":2,"state":"ARM"%s}]'
                                         % (peer(1, 2), peer(1, 1))),
    "link_to_a_port_that_is_not_there": two(peer(2, 2)),
    "link_rate": port(',"lid":7,"width":"12x","speed":"XDR"'),
    "port_guid": adapter(',"ports":[{"num":1,"state":"ARM","portGuid":"0x2"}]'),
    "description": node(',"description":"S1 \\u00e9"'),
    "description_escaped": node(',"description":{"escaped":"S1 %FF"}'),
    "description_empty": node(',"description":""'),
    "extra_of_a_node": node(',"extra": { "b" : [ ] , "a" : "x y" }'),
    "extra_of_a_port": port(',"extra":{"note":"\\"\\\\"}'),
    "ports_empty": node(',"ports":[]'),
    "ports_255": file('{"name":"S1","guid":1,"type":"SW","numPorts":255,"ports":[%s]}' % ",".join(
        '{"num":%d,"state":"ARM"}' % n for n in range(256))),
    "ports_descending": node(',"ports":[{"num":4,"state":"ARM"},{"num":0,"state":"ARM"}]'),
    "attributes_empty": node(',"attributes":{},"absent":{}'),
    "masks": node(',"smpCapabilityMask":[0,"0xffffffff",4294967295,1],"gmpCapabilityMask":[0,0,0,0]'),
    "number_largest_decimal": number("4294967295"),
    "number_largest_hexadecimal": number('"0xFFFFffff"'),
    "number_zeros_before_digits": number('"0x00000000000000000001"'),
    "counters_all_sets": port_attribute('"WrenReductionCounters":{%s}' % ",".join(
        counter_set(i) for i in range(7, -1, -1))),
    "counters_no_set": port_attribute('"WrenReductionCounters":{}'),
    "monitors_both": port_attribute('"WrenReductionConfigureMLIDMonitors":[1,0]'),
    "monitors_none": port_attribute('"WrenReductionConfigureMLIDMonitors":[]'),
    "absent_reason_empty": node(',"absent":{"SMP_NodeInfo":""}'),
    "absent_before_attributes": node(',"absent":{"SMP_NodeInfo":"x"},"attributes":{%s}' % INFO),
    "all_marks_of_a_port": port(',"inSubFabric":false,"fnm":true,"fnm1":true,"special":true'),
    "all_marks_of_a_node": node(',"inSubFabric":false,"opalSwitch":true,"alternativeName":"A"'),
}

# ---------- Refused files, and the messages ----------

NO_SNAPSHOT = '1: not a snapshot: line 1 must be the header, {"fabscan_snapshot": 2, ...}'
CUT = ('the file is truncated: its last line, {"end": true, "nodes": N}, is missing; use the '
       'complete file')
BRACKETS = "not JSON: brackets, commas or colons are missing or too many; correct them"
NOT_UTF8 = "the line is not UTF-8 text; save it as UTF-8"
CONTROL = "not JSON: a control character within text; write it as \\u00XX"
ESCAPE = "not JSON: text with an escape that does not exist; correct it"
UNCLOSED = "not JSON: text without its closing quote; correct it"
MALFORMED_NUMBER = "not JSON: a malformed number; correct it"
NUMBER = 'must be a whole number, or "0x..." in hexadecimal digits, not '
NOT_WHOLE = "is not a whole number; omit the fraction and exponent"
AT_NUMBER = "2: ports[0].attributes.WrenReductionPortInfo.capability_mask: "
BITS_32 = "does not fit the field's 32 bits; give 0 to 4294967295"
NAME_FORM = 'must be text, or one object {"escaped": text}'
BOOLEAN = "must be true or false, not "
OBJECT = "must be an object, {...}, not "
NODES_RECORD = "it is a node's; move it to the node"
PORTS_RECORD = "it is a port's; move it to the port"
VERSION_1 = 'version 1 does not have this key; set "fabscan_snapshot" to 2'
BOTH = 'the record is also under "attributes"; keep one of the two'
NEEDED = (', which the generated file needs; add it, or omit the record and give the reason under '
          '"absent"')


def missing_key(key):
    return 'the key "%s" is missing; add it' % key


def twice(noun, name):
    return 'duplicate %s "%s"; keep one' % (noun, name)


NO = {
    # The file
    "empty": ("", NO_SNAPSHOT),
    "only_a_line_end": ("\n", "1: the line is empty; remove it"),
    "only_blanks": ("  \t", "1: the line is empty; remove it"),
    "binary": (b"\x7fELF\x02\x01\x01\0\0", NO_SNAPSHOT),
    "byte_order_mark": ("\ufeff" + node(), NO_SNAPSHOT),
    "utf_16": (node().encode("utf-16"), NO_SNAPSHOT),
    "text": ("spine-01\n", NO_SNAPSHOT),
    "zstd_cut_short": (b"\x28\xb5\x2f\xfd\x04\x58",
                       "1: the compressed data ends too early; copy it again"),
    # The header
    "header_missing": (node()[len(HEADER):], NO_SNAPSHOT),
    "header_of_something_else": ('{"version":1}\n', NO_SNAPSHOT),
    "header_unclosed": ('{"fabscan_snapshot":1\n', NO_SNAPSHOT),
    "header_list": ("[1]\n", NO_SNAPSHOT),
    "header_version_0": ('{"fabscan_snapshot":0}\n' + end(0),
                         "1: fabscan_snapshot: there is no version 0; the versions are 1 to 2"),
    "header_version_3": ('{"fabscan_snapshot":3}\n' + end(0),
                         "1: fabscan_snapshot: version 3 is newer than this program, which reads "
                         "versions 1 to 2; use a newer one"),
    "header_extra_of_version_1": ('{"fabscan_snapshot":1,"extra":{}}\n' + end(0),
                                  "1: extra: " + VERSION_1),
    "header_extra_text": ('{"fabscan_snapshot":2,"extra":"x"}\n' + end(0),
                          "1: extra: " + OBJECT + "text"),
    "header_version_text": ('{"fabscan_snapshot":"one"}\n' + end(0),
                            '1: fabscan_snapshot: ' + NUMBER + 'the text "one"'),
    "header_twice": (HEADER + node(), "2: a second header; a snapshot has one, in its first line"),
    "header_key_twice": ('{"fabscan_snapshot":1,"fabscan_snapshot":1}\n' + end(0),
                         "1: " + twice("key", "fabscan_snapshot")),
    "header_key_unknown": ('{"fabscan_snapshot":1,"sourse":"x"}\n' + end(0),
                           '1: unknown key "sourse"; did you mean "source"?'),
    "header_source_number": ('{"fabscan_snapshot":1,"source":7}\n' + end(0),
                             "1: source: must be text, not a number"),
    # The last line
    "end_missing": (HEADER, "2: " + CUT),
    "end_missing_after_a_node": (node().replace(end(1), ""), "3: " + CUT),
    "end_counts_too_many": (HEADER + end(1),
                            "2: nodes: the last line counts 1 nodes, but 0 precede it; use the complete file, or correct the count"),
    "end_counts_too_few": (node().replace(end(1), end(0)),
                           "3: nodes: the last line counts 0 nodes, but 1 precede it; use the complete file, or correct the count"),
    "end_false": (HEADER + '{"end":false,"nodes":0}\n', "2: end: must be true"),
    "end_text": (HEADER + '{"end":"true","nodes":0}\n', "2: end: " + BOOLEAN + "text"),
    "end_without_count": (HEADER + '{"end":true}\n', "2: " + missing_key("nodes")),
    "end_count_without_end": (HEADER + '{"nodes":0}\n', "2: " + missing_key("end")),
    "end_count_negative": (HEADER + '{"end":true,"nodes":-1}\n',
                           "2: nodes: -1 is negative; give 0 or more"),
    "end_key_unknown": (HEADER + '{"end":true,"nodes":0,"more":1}\n',
                        '2: unknown key "more"; remove it'),
    "end_twice": (node() + end(1),
                  '4: text follows the last line, {"end": true, ...}; remove it'),
    "end_then_empty_line": (node() + "\n",
                            '4: text follows the last line, {"end": true, ...}; remove it'),
    "end_then_zero_byte": (node() + "\0",
                           '4: text follows the last line, {"end": true, ...}; remove it'),
    # Lines
    "line_empty": (HEADER + "\n" + end(0), "2: the line is empty; remove it"),
    "line_number": (HEADER + "7\n" + end(0), "2: the line must be an object, {...}"),
    "line_null": (HEADER + "null\n" + end(0), "2: the line must be an object, {...}"),
    "line_two_objects": (HEADER + "{" + WHOLE + "} {}\n" + end(1),
                         "2: more text follows the object; put each object on its own line"),
    "line_broken_in_two": (HEADER + "{" + WHOLE + "\n}\n" + end(1), "2: " + BRACKETS),
    "line_without_colon": (file('{"name" "S1"}'), "2: " + BRACKETS),
    "line_trailing_comma": (node(","), "2: " + BRACKETS),
    "line_single_quotes": (file("{'name':'S1'}"), "2: " + BRACKETS),
    "line_comment": (file("{" + WHOLE + "} // S1"), "2: " + BRACKETS),
    "line_deep": (file('{"ports":' + "[" * 2000 + "]" * 2000 + "," + WHOLE + "}"),
                  "2: ports[0]: " + OBJECT + "a list"),
    "line_not_utf8": (named('"\x00"').replace("\0", "@").encode().replace(b"@", b"\xff"),
                      "2: " + NOT_UTF8),
    "line_overlong_utf8": (named('"@"').encode().replace(b"@", b"\xc0\xaf"), "2: " + NOT_UTF8),
    "line_surrogate_in_utf8": (named('"@"').encode().replace(b"@", b"\xed\xa0\x80"),
                               "2: " + NOT_UTF8),
    "line_control_character": (named('"a\x01b"'), "2: " + CONTROL),
    "line_tab_in_text": (named('"a\tb"'), "2: " + CONTROL),
    "line_zero_byte_in_text": (named('"a\0b"'), "2: " + CONTROL),
    "line_unclosed_text": (HEADER + '{"name":"S1\n' + end(1), "2: " + UNCLOSED),
    "line_unknown_escape": (named('"a\\x41"'), "2: name: " + ESCAPE),
    "line_half_surrogate": (named('"a\\ud800"'), "2: name: " + ESCAPE),
    # Nodes
    "node_empty": (file("{}"), "2: " + missing_key("name")),
    "node_without_name": (file('{"guid":1,"type":"SW","numPorts":1}'), "2: " + missing_key("name")),
    "node_without_guid": (file('{"name":"S1","type":"SW","numPorts":1}'),
                          "2: " + missing_key("guid")),
    "node_without_type": (file('{"name":"S1","guid":1,"numPorts":1}'), "2: " + missing_key("type")),
    "node_without_num_ports": (file('{"name":"S1","guid":1,"type":"SW"}'),
                               "2: " + missing_key("numPorts")),
    "node_key_unknown": (node(',"colour":"red"'), '2: unknown key "colour"; remove it'),
    "node_key_misspelt": (node(',"port":[]'), '2: unknown key "port"; did you mean "ports"?'),
    "node_key_hostile": (node(',"a\\nb\\u202e":1'),
                         '2: unknown key "a%0Ab%E2%80%AE"; remove it'),
    "node_key_long": (node(',"' + "k" * 100 + '":1'),
                      '2: unknown key "' + "k" * 60 + '..."; remove it'),
    "node_key_twice": (node(',"opalSwitch":true,"opalSwitch":true'),
                       "2: " + twice("key", "opalSwitch")),
    "node_guid_twice_in_line": (node(',"guid":2'), "2: " + twice("key", "guid")),
    "node_key_of_header": (node(',"fabscan_snapshot":1'),
                           "2: fabscan_snapshot: the key does not belong to a node; remove it"),
    "node_key_of_end": (node(',"end":true'),
                        "2: end: the key does not belong to a node; remove it"),
    "node_guid_of_another": (file("{" + WHOLE + "}",
                                  '{"name":"S2","guid":1,"type":"SW","numPorts":4}'),
                             '3: guid: 0x0000000000000001 is the GUID of node "S1" too; give each '
                             'node its own'),
    "node_name_of_another": (file("{" + WHOLE + "}",
                                  '{"name":"S1","guid":2,"type":"SW","numPorts":4}'),
                             '3: name: "S1" is the name of another node too; give each its own'),
    "node_name_number": (named("1"), "2: name: must be text, not a number"),
    "node_name_null": (named("null"), "2: name: must be text, not null"),
    "node_name_list": (named('["S1"]'), "2: name: must be text, not a list"),
    "node_name_empty_object": (named("{}"), "2: name: " + NAME_FORM),
    "node_name_other_object": (named('{"hex":"00"}'), "2: name: " + NAME_FORM),
    "node_name_two_escaped": (named('{"escaped":"a","escaped":"b"}'), "2: name: " + NAME_FORM),
    "node_name_escaped_number": (named('{"escaped":1}'), "2: name: must be text, not a number"),
    "node_guid_too_wide": (file('{"name":"S1","guid":"0x10000000000000000","type":"SW",'
                                '"numPorts":4}'),
                           '2: guid: "0x10000000000000000" does not fit the field\'s 64 bits; give '
                           '0 to 18446744073709551615'),
    "node_guid_without_0x": (file('{"name":"S1","guid":"abcdef","type":"SW","numPorts":4}'),
                             "2: guid: " + NUMBER + 'the text "abcdef"'),
    "node_type_lower_case": (file('{"name":"S1","guid":1,"type":"sw","numPorts":4}'),
                             '2: type: "sw" is not one of "SW", "RTR", "CA" or "UNKNOWN"'),
    "node_type_number": (file('{"name":"S1","guid":1,"type":2,"numPorts":4}'),
                         "2: type: must be text, not a number"),
    "node_num_ports_256": (file('{"name":"S1","guid":1,"type":"SW","numPorts":256}'),
                           "2: numPorts: 256 does not fit the field's 8 bits; give 0 to 255"),
    "node_in_sub_fabric_number": (node(',"inSubFabric":1'),
                                  "2: inSubFabric: " + BOOLEAN + "a number"),
    "node_opal_switch_null": (node(',"opalSwitch":null'), "2: opalSwitch: " + BOOLEAN + "null"),
    "node_special_unknown": (node(',"specialNode":"GATEWAY"'),
                             '2: specialNode: "GATEWAY" is not one of "AN", "ROUTER" or '
                             '"ETH_GATEWAY"'),
    "node_mask_short": (node(',"smpCapabilityMask":[1,2,3]'),
                        "2: smpCapabilityMask: the mask has 3 words; give 4 of 32 bits, the lowest "
                        "bits first"),
    "node_mask_long": (node(',"gmpCapabilityMask":[1,2,3,4,5]'),
                       "2: gmpCapabilityMask: the mask has 5 words; give 4 of 32 bits, the lowest "
                       "bits first"),
    "node_mask_word_too_wide": (node(',"smpCapabilityMask":[0,0,0,"0x100000000"]'),
                                '2: smpCapabilityMask[3]: "0x100000000" ' + BITS_32),
    "node_mask_number": (node(',"smpCapabilityMask":7'),
                         "2: smpCapabilityMask: must be a list, [...], not a number"),
    # Ports
    "ports_object": (node(',"ports":{}'), "2: ports: must be a list, [...], not an object"),
    "ports_of_numbers": (node(',"ports":[1]'), "2: ports[0]: " + OBJECT + "a number"),
    "ports_unclosed": (node(',"ports":['), "2: ports[0]: " + BRACKETS),
    "port_without_num": (node(',"ports":[{"state":"ARM"}]'), "2: ports[0]: " + missing_key("num")),
    "port_without_state": (node(',"ports":[{"num":1}]'), "2: ports[0]: " + missing_key("state")),
    "port_above_num_ports": (port(num="5"),
                             "2: ports[0].num: port 5 is above the node's numPorts, 4; correct one "
                             "of the two"),
    "port_256": (port(num="256"),
                 "2: ports[0].num: 256 does not fit the field's 8 bits; give 0 to 255"),
    "port_0_of_an_adapter": (adapter(',"ports":[{"num":0,"state":"ARM"}]'),
                             "2: ports[0].num: port 0 exists on a switch only; number this node's "
                             "ports from 1"),
    "port_twice": (node(',"ports":[{"num":1,"state":"ARM"},{"num":1,"state":"ARM"}]'),
                   "2: ports[1].num: duplicate port 1; keep one"),
    "port_key_twice": (port(',"num":1'), "2: ports[0]: " + twice("key", "num")),
    "port_key_unknown": (port(',"colour":1'), '2: ports[0]: unknown key "colour"; remove it'),
    "port_lid_too_wide": (port(',"lid":65536'),
                          "2: ports[0].lid: 65536 does not fit the field's 16 bits; give 0 to 65535"),
    "port_width_unknown": (port(',"width":"3x"'),
                           '2: ports[0].width: "3x" is not one of "1x", "2x", "4x", "8x", "12x" or ""'),
    "port_speed_of_version_1": (version_1(port(',"speed":"NDR"')), "2: ports[0].speed: " + VERSION_1),
    "port_state_unknown": (port(state='"UP"'),
                           '2: ports[0].state: "UP" is not one of "ACTIVE", "ARM", "INIT", "DOWN" '
                           'or "UNKNOWN"'),
    "port_fnm_text": (port(',"fnm":"yes"'), "2: ports[0].fnm: " + BOOLEAN + "text"),
    # Links
    "link_of_version_1": (version_1(two(peer(2, 1), peer(1, 1))), "2: ports[0].peer: " + VERSION_1),
    "link_without_port": (port(',"peer":{"guid":2}'), "2: ports[0].peer: " + missing_key("port")),
    "link_without_guid": (port(',"peer":{"port":2}'), "2: ports[0].peer: " + missing_key("guid")),
    "link_key_unknown": (port(',"peer":{"guid":2,"num":2}'),
                         '2: ports[0].peer: unknown key "num"; remove it'),
    "link_number": (port(',"peer":2'), "2: ports[0].peer: " + OBJECT + "a number"),
    "link_port_256": (port(',"peer":{"guid":2,"port":256}'),
                      "2: ports[0].peer.port: 256 does not fit the field's 8 bits; give 0 to 255"),
    "link_twice": (port(peer(2, 1) + peer(2, 1)), "2: ports[0]: " + twice("key", "peer")),
    "link_to_itself": (port(peer(1, 1)),
                       "2: port 1: peer: the port is its own peer; correct or remove it"),
    "link_to_port_0": (two(peer(2, 0)),
                       "2: port 1: peer: a link does not end at port 0; correct the number"),
    "link_of_port_0": (port(peer(2, 1), num="0"),
                       "2: port 0: peer: port 0 of a switch has no link; remove it"),
    "link_above_num_ports": (two(peer(2, 5)),
                             '2: port 1: peer: "S2" has 4 ports, not a port 5; correct one of the '
                             'two'),
    "link_of_one_end": (two("", peer(1, 1)),
                        '3: port 1: peer: port 1 of "S1" has no peer; add this port there, or '
                        'remove the peer here'),
    "link_to_a_port_with_another": (two(peer(2, 1), peer(7, 9)),
                                    '2: port 1: peer: port 1 of "S2" has another peer, port 9 of '
                                    '0x0000000000000007; correct one of the two'),
    "link_to_another_fabric_twice": (two(peer(7, 9), peer(7, 9)),
                                     "3: port 1: peer: port 9 of 0x0000000000000007 is the peer of "
                                     "another port too; correct one of the two"),
    "port_guid_of_version_1": (version_1(port(',"portGuid":1')),
                               "2: ports[0].portGuid: " + VERSION_1),
    "description_of_version_1": (version_1(node(',"description":"S1"')),
                                 "2: description: " + VERSION_1),
    "description_number": (node(',"description":1'), "2: description: must be text, not a number"),
    "extra_list": (node(',"extra":[]'), "2: extra: " + OBJECT + "a list"),
    "extra_twice": (node(',"extra":{},"extra":{}'), "2: " + twice("key", "extra")),
    "extra_with_a_wrong_atom": (node(',"extra":{"a":nul}'), "2: extra: " + BRACKETS),
    "extra_with_a_wrong_number": (node(',"extra":{"a":[01]}'), "2: extra: " + MALFORMED_NUMBER),
    "extra_with_a_wrong_escape": (node(',"extra":{"a":"\\q"}'), "2: extra: " + ESCAPE),
    # Records
    "record_unknown": (attribute('"SMP_NodeInf":{}'),
                       '2: attributes: unknown record "SMP_NodeInf"; did you mean "SMP_NodeInfo"?'),
    "record_list": (attribute('"SMP_NodeInfo":[]'), "2: attributes.SMP_NodeInfo: " + OBJECT +
                    "a list"),
    "record_twice": (attribute(INFO + "," + INFO),
                     "2: attributes: " + twice("record", "WrenReductionInfo")),
    "record_of_a_port_on_a_node": (attribute(PORT_INFO),
                                   '2: attributes: unknown record "WrenReductionPortInfo"; ' +
                                   PORTS_RECORD),
    "record_of_a_node_on_a_port": (port_attribute(INFO),
                                   '2: ports[0].attributes: unknown record "WrenReductionInfo"; ' +
                                   NODES_RECORD),
    "record_field_unknown": (port_attribute('"WrenReductionPortInfo":{"capabilty_mask":1}'),
                             "2: ports[0].attributes.WrenReductionPortInfo: unknown field "
                             '"capabilty_mask"; did you mean "capability_mask"?'),
    "record_field_twice": (port_attribute('"WrenReductionPortInfo":{"capability_mask":1,'
                                          '"capability_mask":1}'),
                           "2: ports[0].attributes.WrenReductionPortInfo: " +
                           twice("field", "capability_mask")),
    "record_field_missing": (attribute('"WrenReductionInfo":{"capability_mask":1,'
                                       '"hbf_group_cap":1}'),
                             '2: attributes.WrenReductionInfo: the field "reduction_fdb_cap" is '
                             "missing" + NEEDED),
    "record_nested_field_missing": (attribute('"VendorSpec_GeneralInfo":{"HWInfo":{}}'),
                                    '2: attributes.VendorSpec_GeneralInfo.HWInfo: the field '
                                    '"DeviceID" is missing' + NEEDED),
    "record_array_short": (attribute('"IB_ClassPortInfo":{"RedirectGID":[1]}'),
                           "2: attributes.IB_ClassPortInfo.RedirectGID: the list has 1 elements; "
                           "give 2"),
    "record_array_long": (attribute('"IB_ClassPortInfo":{"RedirectGID":[1,2,3]}'),
                          "2: attributes.IB_ClassPortInfo.RedirectGID: the list has 3 elements; "
                          "give 2"),
    "record_array_number": (attribute('"IB_ClassPortInfo":{"RedirectGID":1}'),
                            "2: attributes.IB_ClassPortInfo.RedirectGID: must be a list, [...], "
                            "not a number"),
    "counters_set_8": (port_attribute('"WrenReductionCounters":{"8":{}}'),
                       "2: ports[0].attributes.WrenReductionCounters: unknown counter set \"8\"; "
                       'give counter sets "0" to "7"'),
    "counters_set_twice": (port_attribute('"WrenReductionCounters":{%s,%s}' %
                                          (counter_set(3), counter_set(3))),
                           "2: ports[0].attributes.WrenReductionCounters: " +
                           twice("counter set", "3")),
    "counters_list": (port_attribute('"WrenReductionCounters":[]'),
                      "2: ports[0].attributes.WrenReductionCounters: " + OBJECT + "a list"),
    "monitors_selector_2": (port_attribute('"WrenReductionConfigureMLIDMonitors":[0,2]'),
                            "2: ports[0].attributes.WrenReductionConfigureMLIDMonitors[1]: monitor "
                            "selector 2 is unknown; use 0 (reduction counters) or 1 (push "
                            "reduction counters)"),
    "monitors_selector_twice": (port_attribute('"WrenReductionConfigureMLIDMonitors":[0,0]'),
                                "2: ports[0].attributes.WrenReductionConfigureMLIDMonitors[1]: "
                                "duplicate monitor selector 0; keep one"),
    "absent_and_there": (node(',"absent":{"WrenReductionInfo":"x"},"attributes":{%s}' % INFO),
                         "2: absent.WrenReductionInfo: " + BOTH),
    "absent_and_there_on_a_port": (port(',"attributes":{%s},"absent":{"WrenReductionPortInfo":"x"}'
                                        % PORT_INFO),
                                   "2: ports[0].absent.WrenReductionPortInfo: " + BOTH),
    "absent_of_a_port_on_a_node": (node(',"absent":{"SMP_PortInfo":"x"}'),
                                   '2: absent: unknown record "SMP_PortInfo"; ' + PORTS_RECORD),
    "absent_reason_number": (node(',"absent":{"SMP_NodeInfo":1}'),
                             "2: absent.SMP_NodeInfo: must be text, not a number"),
    # Numbers
    "number_too_wide": (number("4294967296"), AT_NUMBER + "4294967296 " + BITS_32),
    "number_too_wide_hexadecimal": (number('"0x100000000"'), AT_NUMBER + '"0x100000000" ' + BITS_32),
    "number_huge": (number("9" * 40), AT_NUMBER + "9" * 40 + " " + BITS_32),
    "number_too_long_to_repeat": (number("9" * 41), AT_NUMBER + "the number " + BITS_32),
    "number_negative": (number("-1"), AT_NUMBER + "-1 is negative; give 0 or more"),
    "number_negative_zero": (number("-0"), AT_NUMBER + "-0 is negative; give 0 or more"),
    "number_fraction": (number("1.0"), AT_NUMBER + "1.0 " + NOT_WHOLE),
    "number_exponent": (number("1e3"), AT_NUMBER + "1e3 " + NOT_WHOLE),
    "number_leading_zero": (number("01"), AT_NUMBER + MALFORMED_NUMBER),
    "number_then_zero_bytes": (number('4\x01\0\0\0"end"'), AT_NUMBER + MALFORMED_NUMBER),
    "number_plus": (number("+1"), AT_NUMBER + BRACKETS),
    "number_not_quoted_hexadecimal": (number("0x1"), AT_NUMBER + MALFORMED_NUMBER),
    "number_nan": (number("NaN"), AT_NUMBER + BRACKETS),
    "number_text": (number('"12"'), AT_NUMBER + NUMBER + 'the text "12"'),
    "number_empty_text": (number('""'), AT_NUMBER + NUMBER + 'the text ""'),
    "number_only_0x": (number('"0x"'), AT_NUMBER + NUMBER + 'the text "0x"'),
    "number_bad_digit": (number('"0x1g"'), AT_NUMBER + NUMBER + 'the text "0x1g"'),
    "number_with_blank": (number('"0x1 "'), AT_NUMBER + NUMBER + 'the text "0x1 "'),
    "number_with_escape": (number('"0x\\u0031"'),
                           AT_NUMBER + 'must be a whole number, or "0x..." in hexadecimal digits, '
                           "without escapes"),
    "number_true": (number("true"), AT_NUMBER + NUMBER + "true or false"),
    "number_null": (number("null"), AT_NUMBER + NUMBER + "null"),
    "number_object": (number("{}"), AT_NUMBER + NUMBER + "an object"),
    "number_deep": (number("[" * 2000 + "]" * 2000), AT_NUMBER + NUMBER + "a list"),
}


def contents():
    """File name -> bytes."""
    files = {"y_%s.jsonl" % name: text for name, text in YES.items()}
    files.update({"n_%s.jsonl" % name: text for name, (text, _) in NO.items()})
    files["messages.tsv"] = "".join(
        "n_%s.jsonl\t%s\n" % (name, message) for name, (_, message) in sorted(NO.items()))
    return {name: text if isinstance(text, bytes) else text.encode()
            for name, text in files.items()}


def main():
    wanted = contents()
    there = {path.name: path for path in HERE.iterdir() if path.suffix in (".jsonl", ".tsv")}
    if sys.argv[1:] == ["--check"]:
        stale = sorted(name for name in wanted.keys() | there.keys()
                       if name not in wanted or name not in there
                       or there[name].read_bytes() != wanted[name])
        if stale:
            sys.exit("not as tests/minefield/make.py makes them: " + ", ".join(stale))
        return
    for name in there.keys() - wanted.keys():
        there[name].unlink()
    for name, data in wanted.items():
        (HERE / name).write_bytes(data)


if __name__ == "__main__":
    main()
