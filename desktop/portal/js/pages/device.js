// SPDX-License-Identifier: Apache-2.0
/* What the box tells of itself, and how full its storage is. */
(function () {
    'use strict';

    /* One question to gSTB, asked anew each time that the page opens. */
    function ask() {
        var question = arguments;
        return function () {
            return Box.stb.apply(null, question);
        };
    }

    /* Two answers in one row; without a box none. */
    function both(first, second) {
        return function () {
            return Box.isPresent() ? text(first()) + ', ' + text(second()) : undefined;
        };
    }

    var identity = [
        ['Version', ask('Version')],
        ['Vendor and model', both(ask('GetDeviceVendor'), ask('GetDeviceModel'))],
        ['Serial number', ask('GetDeviceSerialNumber')],
        ['Hardware', ask('GetDeviceVersionHardware')],
        ['Image', ask('GetDeviceImageDesc')],
        ['Image version, date', both(ask('GetDeviceImageVersion'), ask('RDir', 'ImageDate'))],
        ['Software version', ask('RDir', 'Img_Ver')]
    ];
    var network = [
        ['MAC address', ask('GetDeviceMacAddress')],
        ['IP address', ask('RDir', 'IPAddress')],
        ['Gateway', ask('GetNetworkGateways')],
        ['Name server', ask('GetNetworkNameServers')],
        ['Cable connected', ask('GetLanLinkStatus')],
        ['Display connected', ask('GetHDMIConnectionState')],
        ['Video and menu mode', both(ask('RDir', 'vmode'), ask('RDir', 'gmode'))]
    ];
    var identifiers = [
        ['GetUID()', ask('GetUID')],
        ['GetUID("device_id")', ask('GetUID', 'device_id')],
        ['GetUID("portal")', ask('GetUID', 'portal')],
        ['GetUID("portal", "token")', ask('GetUID', 'portal', 'token')],
        ['GetHashVersion1("demo", "1")', ask('GetHashVersion1', 'demo', '1')]
    ];

    function text(value) {
        if (value === undefined) {
            return Box.isPresent() ? '(not offered)' : '(no box)';
        }
        if (typeof value === 'boolean') {
            return value ? 'yes' : 'no';
        }
        return value === '' ? '(empty)' : String(value);
    }

    function fill(id, rows) {
        var table = document.getElementById(id);
        table.innerHTML = '';
        rows.forEach(function (row) {
            var value = text(row[1]());
            var line = table.insertRow(-1);
            line.insertCell(-1).textContent = row[0];
            line.insertCell(-1).textContent = value;
            line.className = value.charAt(0) === '(' ? 'absent' : '';
        });
    }

    Pager.register('device', {
        element: document.getElementById('page_device'),
        open: function () {
            fill('deviceIdentity', identity);
            fill('deviceNetwork', network);
            fill('deviceIdentifiers', identifiers);
            // After the page has been painted, since a silent receiver costs three seconds.
            document.getElementById('storageBars').textContent = 'Asking the receiver ...';
            setTimeout(StorageBars.show, 50);
        },
        back: Pager.toMenu
    });
}());
