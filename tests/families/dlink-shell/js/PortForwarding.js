// The rules of the table, as they will be saved.
function Datalist() {
  this.list = [];
  this.maxrowid = 0;
}
Datalist.prototype.push = function (data) {
  for (var i = 0; i < this.list.length; i++) {
    if (this.list[i].name === data.name) {
      alert("Name cannot be the same.");
      return false;
    }
    if (this.list[i].ipAddress === data.ipAddress && this.list[i].tcpPort === data.tcpPort &&
        this.list[i].udpPort === data.udpPort) {
      alert("Rule cannot be the same.");
      return false;
    }
  }
  data.rowid = this.maxrowid;
  this.maxrowid += 1;
  this.list.push(data);
  var row = document.createElement("tr");
  row.id = "tr" + data.rowid;
  row.innerHTML = '<td><input type="checkbox"' + (data.enable === "true" ? " checked" : "") + '></td><td>' +
    escapeXml(data.name) + "</td><td>" + data.ipAddress + "</td><td>" + (data.tcpPort || "N/A") +
    "</td><td>" + (data.udpPort || "N/A") + "</td><td>Always</td>" +
    '<td><img alt="" style="cursor:pointer" width=28 height=28></td>' +
    '<td><img alt="" style="cursor:pointer" width=41 height=41 onclick="deleteData(' + data.rowid + ')"></td>';
  document.querySelector("#tblPortForwarding > tbody").appendChild(row);
  return true;
};
Datalist.prototype.remove = function (rowid) {
  this.list = this.list.filter(function (data) {
    return data.rowid !== rowid;
  });
  document.getElementById("tr" + rowid).remove();
};
function Data(name, ipAddress, tcpPort, udpPort, enable) {
  this.name = name;
  this.ipAddress = ipAddress;
  this.tcpPort = tcpPort;
  this.udpPort = udpPort;
  this.enable = enable;
}
