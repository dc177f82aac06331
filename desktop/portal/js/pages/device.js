// SPDX-License-Identifier: Apache-2.0
/* Everything that the box tells of itself, and how full its storage is. */
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
            return Box.isPresent() ? text(first()) + ' / ' + text(second()) : undefined;
        };
    }

    var tables = {
        deviceIdentity: [
            ['Vendor', ask('GetDeviceVendor')],
            ['Model', ask('GetDeviceModel')],
            ['Extended model', ask('GetDeviceModelExt')],
            ['Hardware', ask('GetDeviceVersionHardware')],
            ['Serial number', ask('GetDeviceSerialNumber')],
            ['Version', ask('Version')],
            ['Software version', ask('RDir', 'Img_Ver')]
        ],
        deviceImage: [
            ['Image', ask('GetDeviceImageDesc')],
            ['Image version', ask('GetDeviceImageVersion')],
            ['Running version', ask('GetDeviceImageVersionCurrent')],
            ['Image date', ask('RDir', 'ImageDate')],
            ['Active bank', ask('GetDeviceActiveBank')],
            ['Partitions', ask('RDir', 'getenv mtdparts')],
            ['Time server', ask('RDir', 'getenv ntpurl')]
        ],
        deviceNetwork: [
            ['MAC address', ask('GetDeviceMacAddress')],
            ['IP address', ask('RDir', 'IPAddress')],
            ['Gateway', ask('GetNetworkGateways')],
            ['Name server', ask('GetNetworkNameServers')],
            ['Cable / Wi-Fi', both(ask('GetLanLinkStatus'), ask('GetWifiLinkStatus'))],
            ['PPPoE', ask('GetPppoeLinkStatus')],
            ['Display', ask('GetHDMIConnectionState')]
        ],
        deviceScreen: [
            ['Video / menu mode', both(ask('RDir', 'vmode'), ask('RDir', 'gmode'))],
            ['Page', function () {
                return window.innerWidth + ' \u00d7 ' + window.innerHeight;
            }],
            ['Browser', function () {
                return navigator.userAgent;
            }]
        ],
        deviceIdentifiers: [
            ['GetUID()', ask('GetUID')],
            ['GetUID("device_id")', ask('GetUID', 'device_id')],
            ['GetUID("portal")', ask('GetUID', 'portal')],
            ['GetUID("portal", "token")', ask('GetUID', 'portal', 'token')],
            ['GetHashVersion1("demo", "1")', ask('GetHashVersion1', 'demo', '1')]
        ]
    };

    function text(value) {
        if (value === undefined) {
            return Box.isPresent() ? '(not offered)' : '(no box)';
        }
        if (typeof value === 'boolean') {
            return value ? 'connected' : 'not connected';
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
            Object.keys(tables).forEach(function (id) {
                fill(id, tables[id]);
            });
            // After the page has been painted, since a silent receiver costs three seconds.
            document.getElementById('storageBars').textContent = 'Asking the receiver ...';
            setTimeout(StorageBars.show, 50);
        },
        back: Pager.toMenu
    });
}());
