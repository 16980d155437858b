<HTML><HEAD><TITLE>Port Range Forward</TITLE>
<SCRIPT src="menu.js"></SCRIPT>
<SCRIPT language=JavaScript>
function box(name, row) {
  return document.portRange[name + row];
}
function to_submit(F) {
  for (var i = 0; i < 15; i++) {
    var from = Number(box("from", i).value), to = Number(box("to", i).value);
    if (box("enable", i).checked && (from === 0 || to === 0 || from > to)) {
      alert("The value is out of range [1 - 65535].");
      return;
    }
    if (box("ip", i).value === "1") {
      alert("The IP address is that of the router.");
      return;
    }
    for (var j = i + 1; j < 15; j++) {
      var same = box("pro", i).value === box("pro", j).value || box("pro", i).value === "both" || box("pro", j).value === "both";
      if (from > 0 && Number(box("from", j).value) > 0 && same && from <= Number(box("to", j).value) && Number(box("from", j).value) <= to) {
        alert("The ports of two rows overlap.");
        return;
      }
    }
  }
  F.submit_button.value = "Forward";
  F.gui_action.value = "Apply";
  F.submit();
}
function valid_range2(I, start, end, M, row) {
  if (!box("enable", row).checked && (I.value === "0" || I.value === "")) {
    return;
  }
  if (!/^\d+$/.test(I.value) || Number(I.value) < start || Number(I.value) > end) {
    alert(M + " value is out of range [" + start + " - " + end + "]");
    I.value = I.defaultValue;
  }
}
function init() {
  document.portRange.action = "apply.cgi;session_id=" + session_key;
}
</SCRIPT></HEAD>
<BODY onload=init()>
<FORM name=portRange method=post action=apply.cgi>
<input type=hidden name=submit_button><input type=hidden name=gui_action>
<input type=hidden name="forward_port" value="15"><input type=hidden name="wait_time" value="3">
<SCRIPT>draw_menu("Forward.asp")</SCRIPT>
<TABLE class=TITLE_MAIN><TR><TD class=TITLE2><TABLE class=BORDERTABLE_LEFT>
<TR><TD><B>Application Name</B></TD></TR>
{{each rules to 15}}
<TR><TD align=right><INPUT maxLength=20 size=19 name=name{{index}} value='{{rule.name}}' class=num></TD></TR>
{{end}}
</TABLE></TD><TD class=FUNNAME_CENTER><TABLE class=BORDERTABLE1>
<TR><td><B>Start ~ End Port</B></td><td><B>Protocol</B></td><td><B>To IP Address</B></td><td><B>Enabled</B></td></TR>
{{each rules to 15}}
<TR align=middle><TD><INPUT maxLength=5 value='{{rule.start|=0}}' name=from{{index}} onBlur=valid_range2(this,1,65535,"Port",{{index}}) class=num><span>&nbsp; to</span> <INPUT maxLength=5 value='{{rule.end|=0}}' name=to{{index}} onBlur=valid_range2(this,1,65535,"Port",{{index}}) class=num></TD>
<TD><SELECT size=1 name=pro{{index}}><OPTION value=tcp {{rule.protocol|TCP=selected|UDP=|TCP/UDP=}}>TCP</OPTION><OPTION value=udp {{rule.protocol|UDP=selected|TCP=|TCP/UDP=}}>UDP</OPTION><OPTION value=both {{rule.protocol|TCP/UDP=selected|TCP=|UDP=|=selected}}>Both</OPTION></SELECT></TD>
<TD dir="ltr">192.168.1.&nbsp;<INPUT maxLength=3 value='{{rule.last|=0}}' name=ip{{index}} onBlur=valid_range2(this,1,254,"IP",{{index}}) class=num></TD>
<TD><INPUT type=checkbox value=on name=enable{{index}} {{rule.enabled|yes=checked|no=}}></TD></TR>
{{end}}
</TABLE></TD></TR></TABLE>
<A id=divBT1 class=BOTTON href=javascript:to_submit(document.forms[0])>Save Settings</A>
<A id=divBT0 class=BOTTON href=javascript:document.location.reload(true)>Cancel Changes</A>
</FORM></BODY></HTML>
