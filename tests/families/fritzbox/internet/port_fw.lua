<!DOCTYPE html>
<html>
<head><title>FRITZ!Box 7390</title>
<script>
var g_delete_Btn_Msg = false;
function On_MainFormSubmit() {
  if (g_delete_Btn_Msg && !confirm("Do you really want to delete this entry?")) {
    g_delete_Btn_Msg = false;
    return false;
  }
  return true;
}
</script></head>
<body>
<ul id="menu"><li><a href="/home/home.lua?sid={{session}}">Overview</a></li></ul>
<form name="main_form" method="POST" action="/internet/port_fw.lua" id="uiMainForm" onsubmit="return On_MainFormSubmit()">
<h4>List of Port Sharing Rules</h4>
<table id="uiPorts" class="zebra">
<tr><th>Active</th><th>Name</th><th>Protocol</th><th>Port</th><th>to Computer</th><th>to Port</th><th></th><th></th></tr>
{{each rules}}
<tr><td><input type="checkbox" name="active_{{index}}" value="1" {{rule.enabled|yes=checked|no=}}></td><td title="{{rule.name}}">{{rule.name}}</td><td>{{rule.protocol}}</td><td>{{rule.ports}}</td><td>{{rule.address|192.168.1.110=FrontDesk}}</td><td>{{rule.ports}}</td>
<td class="buttonrow"><button type="submit" class="icon" id="edit_{{rule.id}}" name="edit" value="{{rule.id}}"><img src="/css/default/images/bearbeiten.gif" alt="Edit" title="Edit"></button></td>
<td class="buttonrow"><button type="submit" class="icon" id="delete_{{rule.id}}" name="delete_portrule" value="{{rule.id}}" onclick="g_delete_Btn_Msg=true;"><img src="/css/default/images/loeschen.gif" alt="Delete" title="Delete"></button></td></tr>
{{none}}<tr><td colspan="8">No port sharing rules are set up.</td></tr>
{{end}}
</table>
<button type="submit" name="new_rule" id="uiNewRule">New Port Sharing Rule</button>
<div id="btn_form_foot">
<input type="hidden" name="sid" value="{{session}}">
<button type="submit" name="apply" id="uiApply">Apply</button>
<button type="submit" name="cancel">Cancel</button>
</div>
</form>
</body>
</html>
