<HTML><HEAD><TITLE>Port Range Forward</TITLE>
<SCRIPT language=JavaScript>
function to_submit(F) {
  if (!check_all(F)) {
    return;
  }
  F.submit_button.value = "Forward";
  F.action.value = "Apply";
  document.forms[0].submit();
}
function check_all(F) {
  for (var i = 0; i < 10; i++) {
    if (!F["enable" + i].checked) {
      continue;
    }
    if (Number(F["from" + i].value) === 0 || Number(F["to" + i].value) === 0 || Number(F["ip" + i].value) === 0) {
      alert("The value of the port and of the IP address must not be 0.");
      return false;
    }
    if (Number(F["ip" + i].value) === 1) {
      alert("The IP address is the router's own.");
      return false;
    }
    for (var j = i + 1; j < 10; j++) {
      var same = F["pro" + i].value === F["pro" + j].value || F["pro" + i].value === "both" || F["pro" + j].value === "both";
      if (F["enable" + j].checked && same && Number(F["from" + i].value) <= Number(F["to" + j].value) &&
          Number(F["from" + j].value) <= Number(F["to" + i].value)) {
        alert("Ports of two rows overlap.");
        return false;
      }
    }
  }
  return true;
}
function valid_range(I, start, end, M) {
  var d = parseInt(I.value, 10);
  if (isNaN(d) || d < start || d > end) {
    alert(M + " value is out of range [" + start + " - " + end + "]");
    I.value = I.defaultValue;
  }
}
function valid_name(I, M) {
  if (/[<>"']/.test(I.value)) {
    alert(M + " has invalid characters.");
    I.value = I.defaultValue;
  }
}
</SCRIPT></HEAD>
<BODY>
<DIV align=center>
<FORM name=portRange method=post action=apply.cgi>
<input type=hidden name=submit_button>
<input type=hidden name=action>
<input type=hidden name="forward_port" value="13">
<TABLE cellSpacing=0 cellPadding=0 width=806 border=0>
<TR><TD><A href="index.asp">Setup</A></TD><TD><A href="Forward.asp"><B>Applications &amp; Gaming</B></A></TD></TR></TABLE>
<TABLE width=421 border=0>
<TBODY>
<TR><TD align=middle colSpan=6><B>Port Range</B></TD></TR>
<TR><TD><B>Application</B></TD><TD><B>Start</B></TD><TD><B>End</B></TD><TD><B>Protocol</B></TD><TD><B>IP Address</B></TD><TD><B>Enable</B></TD></TR>
{{each rules to 10}}
<TR align=middle>
<TD><INPUT maxLength=12 size=7 name=name{{index}} onBlur=valid_name(this,"Name") value='{{rule.name}}' class=num></TD>
<TD><INPUT maxLength=5 size=5 value='{{rule.start|=0}}' name=from{{index}} onBlur=valid_range(this,0,65535,"Port") class=num><span>&nbsp; to</span></TD>
<TD><INPUT maxLength=5 size=5 value='{{rule.end|=0}}' name=to{{index}} onBlur=valid_range(this,0,65535,"Port") class=num></TD>
<TD><SELECT size=1 name=pro{{index}}><OPTION value=tcp {{rule.protocol|TCP=selected|UDP=|TCP/UDP=}}>TCP</OPTION><OPTION value=udp {{rule.protocol|UDP=selected|TCP=|TCP/UDP=}}>UDP</OPTION><OPTION value=both {{rule.protocol|TCP/UDP=selected|TCP=|UDP=|=selected}}>Both</OPTION></SELECT></TD>
<TD>192.168.1.<INPUT maxLength=3 size=3 value='{{rule.last|=0}}' name=ip{{index}} onBlur=valid_range(this,0,254,"IP") class=num></TD>
<TD><INPUT type=checkbox value=on name=enable{{index}} {{rule.enabled|yes=checked|no=}}></TD></TR>
{{end}}
</TBODY></TABLE>
<INPUT type=button name=save_button value="Save Settings" onClick=to_submit(document.portRange)>
<INPUT type=button name=cancel_button value="Cancel Changes" onClick="window.location='Forward.asp'">
</FORM></DIV></BODY></HTML>
